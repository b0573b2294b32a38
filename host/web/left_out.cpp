// SPDX-License-Identifier: MIT
// Subcommands that a module cannot have: the page's server, and many jobs on threads of one process. And a function
// that the module's C++ library lacks.
#include <cxxabi.h>

#include "host/program/batch.h"
#include "host/program/edit.h"
#include "host/program/program.h"

// In a module, an exception that nobody catches means that memory has run out.
extern "C" std::type_info* __cxxabiv1::__cxa_current_exception_type() { return nullptr; }

namespace glyphmotion {

bool IsEdit(const std::vector<std::string>& words) { return !words.empty() && words.front() == "edit"; }

std::string Edit(const std::vector<std::string>&, const std::function<bool()>&, bool& usage) {
  usage = true;
  return "this build of the program has no server for the page";
}

bool IsBatch(const std::vector<std::string>& words) { return !words.empty() && words.front() == "batch"; }

BatchOutcome RunBatch(const std::vector<std::string>&, const Catalogue&,
                      const std::function<RunReport(const Arguments&)>&) {
  return {"this build of the program runs one job at a time; write one command for each", kExitUsage};
}

}  // namespace glyphmotion
