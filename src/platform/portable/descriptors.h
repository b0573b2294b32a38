// SPDX-License-Identifier: MIT
// What reading and writing files share: owned descriptors, reasons of failures, and names of files under way.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <utility>

namespace glyphmotion {

/// An open file, closed when it goes.
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

/// open() that goes on after a signal. Descriptors are closed in child processes.
Descriptor OpenFile(const std::string& path, int flags, mode_t mode = 0) noexcept;

/// Writes all. A file that grows past the process's limit is a plain error, EFBIG: the signal that comes with it is
/// swallowed. On failure errno says why.
bool WriteAll(int descriptor, std::string_view bytes) noexcept;

/// The reason behind an errno as the second half of a sentence.
std::string ReasonOf(int error);

/// The folder of a path with its separator; "./" for a bare name.
std::string FolderOf(const std::string& path);

/// Follows links, also to a file that does not exist yet. Empty when they lead in a circle.
std::string TargetOfLinks(const std::string& path);

/// A short hidden name in `folder` that says whose it is; another one each time.
std::string TemporaryName(const std::string& folder);
/// Marks an open file or folder of such a name as one of a process that lives.
void HoldTemporary(int descriptor) noexcept;
/// Removes files and folders with such names whose process is dead.
void ClearStaleTemporaries(const std::string& folder) noexcept;

}  // namespace glyphmotion
