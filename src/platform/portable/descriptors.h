// SPDX-License-Identifier: MIT
// Shared by reading and writing files: owned descriptors, reasons for failures, and temporary names.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <utility>

namespace glyphmotion {

/// Owns an open file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int opened = -1) noexcept : number_(opened) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor();
  explicit operator bool() const noexcept { return number_ >= 0; }
  int operator*() const noexcept { return number_; }

 private:
  int number_;
};

/// open() that restarts after a signal. Descriptors are close-on-exec.
Descriptor OpenFile(const std::string& path, int flags, mode_t mode = 0) noexcept;

/// Writes all bytes. A file that grows past the process's limit is a plain error, EFBIG: the accompanying signal is
/// suppressed. On failure errno has the reason.
bool WriteAll(int descriptor, std::string_view bytes) noexcept;

/// A file for writing in `folder` that vanishes with its last descriptor unless it gets a name. Empty where the system
/// has no such files.
Descriptor OpenUnnamed(const std::string& folder) noexcept;
/// Gives such a file a name that is not used yet. On failure errno has the reason.
bool NameFile(int descriptor, const std::string& path) noexcept;

/// The reason for an errno as the second half of a sentence.
std::string ReasonOf(int error);

/// The folder of a path with its separator; "./" for a bare name.
std::string FolderOf(const std::string& path);

/// Resolves symbolic links, even to a file that does not exist yet. Empty when they form a cycle.
std::string TargetOfLinks(const std::string& path);

/// A short hidden name in `folder` that contains the process id; a new one each time.
std::string TemporaryName(const std::string& folder);
/// Marks an open file or folder of such a name as belonging to a live process.
void HoldTemporary(int descriptor) noexcept;
/// Removes files and folders with such names whose process is dead.
void ClearStaleTemporaries(const std::string& folder) noexcept;

}  // namespace glyphmotion
