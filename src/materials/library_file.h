// SPDX-License-Identifier: MIT
// Reads library files piece by piece, and makes a backup copy before one is rewritten. Paths are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/files.h"

namespace glyphmotion {

/// Library files are read up to this size: 256 MiB.
constexpr std::size_t kMaxLibraryBytes = std::size_t{256} << 20;

/// Reads a file sequentially and knows how much is left, so that a size in the file can be checked against the file
/// before memory is allocated. Files over kMaxLibraryBytes are truncated.
class FileReader {
 public:
  explicit FileReader(const std::string& path) noexcept;
  explicit operator bool() const noexcept { return in_ != nullptr; }
  std::uint64_t Remaining() const noexcept { return remaining_; }
  /// False, with `bytes` unspecified, when fewer are left.
  bool Read(void* bytes, std::size_t count) noexcept;
  bool Skip(std::uint64_t count) noexcept;

 private:
  ReadableFile in_;
  std::uint64_t remaining_ = 0;
};

/// Whether something has this name; true also if that cannot be determined.
bool FileExists(const std::string& path) noexcept;

/// False when there was no such file, or it could not be removed.
bool RemoveFile(const std::string& path) noexcept;

/// Copies the file to path + ".bak", replacing an old copy. A missing file is not a failure.
void BackUpFile(const std::string& path) noexcept;

}  // namespace glyphmotion
