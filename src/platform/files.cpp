// SPDX-License-Identifier: MIT
// The platform-independent part of files: what is written whole, and lack of memory as a reason.
#include "platform/files.h"

#include <exception>

#include "platform/special_file.h"

namespace glyphmotion {

AtomicFile AtomicFile::Begin(const std::string& path, std::string& why) noexcept try {
  AtomicFile begun;
  if (IsPath(path)) {
    begun.state_ = Open(path, why);
  } else {
    why = "it is not a file name";
  }
  return begun;
} catch (const std::exception&) {
  why.assign(kNoMemoryReason);
  return {};
}

bool AtomicFile::Keep(std::string& why) noexcept try {
  const Owner state = std::move(state_);
  return state && Finish(*state, why);
} catch (const std::exception&) {
  why.assign(kNoMemoryReason);
  return false;
}

bool AtomicWriteFile(const std::string& path, std::string_view bytes, std::string* why) noexcept try {
  std::string unheard;
  std::string& reason = why ? *why : unheard;
  if (IsPath(path) && IsSpecialFile(path)) return WriteSpecialFile(path, bytes, reason);
  AtomicFile file = AtomicFile::Begin(path, reason);
  if (!file) return false;
  file.Write(bytes);
  return file.Keep(reason);
} catch (const std::exception&) {
  if (why) why->assign(kNoMemoryReason);
  return false;
}

}  // namespace glyphmotion
