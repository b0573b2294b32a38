// SPDX-License-Identifier: MIT
#include "host/program/outcome.h"

#include <cxxabi.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <typeinfo>

#include "host/encoders/out_of_memory.h"

namespace glyphmotion {

int Fail(const std::string& sentence, int code) {
  std::string line = sentence;
  std::replace(line.begin(), line.end(), '\n', ' ');
  std::fprintf(stderr, "glyphmotion: error: %s\n", line.c_str());
  return code;
}

// Standard error is unbuffered.
int FailForMemory() noexcept {
  std::fputs("glyphmotion: error: ", stderr);
  std::fputs(kOutOfMemory, stderr);
  std::fputs("\n", stderr);
  return kExitFailed;
}

namespace {

// Does not allocate either.
int FailUnexpectedly(const char* what) noexcept {
  std::fprintf(stderr, "glyphmotion: error: unexpected failure: %s; please report it\n", what);
  return kExitFailed;
}

}  // namespace

int PrintedWell(int code) {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
  if (errno == EPIPE) return kExitFailed;
  return Fail(std::string("cannot write to standard output: ") + std::strerror(errno ? errno : EIO));
}

int EndingWell(const std::function<int()>& work) try { return work(); } catch (const std::bad_alloc&) {
  return FailForMemory();
} catch (const std::exception& error) {
  return FailUnexpectedly(error.what());
}

void EndWithoutMemory() noexcept {
  const std::type_info* type = abi::__cxa_current_exception_type();
  // No type: even the exception could not be allocated.
  if (type && *type != typeid(std::bad_alloc)) std::abort();
  FailForMemory();
  std::_Exit(kExitFailed);
}

}  // namespace glyphmotion
