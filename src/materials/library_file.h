// SPDX-License-Identifier: MIT
// Reading library files a piece at a time, and the copy that is kept of one before it is rewritten. Paths are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

namespace glyphmotion {

/// No library file is read beyond this size: 256 MiB.
constexpr std::size_t kMaxLibraryBytes = std::size_t{256} << 20;

/// Reads a file from front to back and knows how much is left, so that a size found in the file can be held against the
/// file before memory is asked for. A file over kMaxLibraryBytes ends there.
class FileReader {
 public:
  explicit FileReader(const std::string& path) noexcept;
  explicit operator bool() const noexcept { return open_; }
  std::uint64_t Remaining() const noexcept { return remaining_; }
  /// False, with nothing promised about `bytes`, when fewer are left.
  bool Read(void* bytes, std::size_t count) noexcept;
  bool Skip(std::uint64_t count) noexcept;

 private:
  std::ifstream in_;
  std::uint64_t remaining_ = 0;
  bool open_ = false;
};

/// Whether something has this name; also when that cannot be found out.
bool FileExists(const std::string& path) noexcept;

/// False when there was no such file, or it could not be removed.
bool RemoveFile(const std::string& path) noexcept;

/// Copies the file to path + ".bak", replacing an old copy. A missing file is no failure.
void BackUpFile(const std::string& path) noexcept;

}  // namespace glyphmotion
