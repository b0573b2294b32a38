// SPDX-License-Identifier: MIT
// The page needs no server where the engine runs in the browser itself.
#include "host/program/edit.h"

namespace glyphmotion {

bool IsEdit(const std::vector<std::string>& words) { return !words.empty() && words.front() == "edit"; }

std::string Edit(const std::vector<std::string>&, const std::function<bool()>&, bool& usage) {
  usage = true;
  return "this build of the program has no server; open the page that it comes with in a browser";
}

}  // namespace glyphmotion
