// SPDX-License-Identifier: MIT
// Whole files, read and written in one piece. Paths are UTF-8. An empty path names no file.
//
// `why`, where a function takes one, gets the reason of a failure as the second half of a sentence: "'a.gif' cannot be
// written: " + why.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace glyphmotion {

/// No file of this program comes near this size; a larger one is refused before it is in memory.
constexpr std::size_t kLargestFile = std::size_t{64} << 20;

/// All bytes of a regular file, untranslated. Nothing when it cannot be opened or read, holds more than `limit` bytes,
/// or is a folder, a pipe or a device, which are never waited for; and without memory.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit = kLargestFile,
                                         std::string* why = nullptr) noexcept;

/// A file that appears whole or not at all. Until Keep, whatever has the name stays as it is; without Keep, and after
/// any failure, nothing is left. Where the system has files without a name, the new one gets its name only when it is
/// whole; elsewhere it has a short name of its own beside the target until then. Files of that kind that a killed
/// process left in the folder are removed by the next write there.
///
/// A link is followed, also to a file that does not exist yet. The new file keeps permissions and, as far as this user
/// may, the owner of the old one. Folders are not made.
class AtomicFile {
 public:
  AtomicFile() noexcept;
  AtomicFile(AtomicFile&&) noexcept;
  AtomicFile& operator=(AtomicFile&&) noexcept;
  ~AtomicFile();

  /// False as a boolean when the file cannot be begun: a folder, a device, a file that is read-only, no permission.
  static AtomicFile Begin(const std::string& path, std::string& why) noexcept;
  explicit operator bool() const noexcept { return state_ != nullptr; }
  /// Appends. After a failure all that follows fails too, Keep included.
  bool Write(std::string_view bytes) noexcept;
  /// Why a write failed, as `why`; empty while none did.
  std::string Trouble() const;
  /// Flushes the file to the disk and gives it its name. The object is empty afterwards.
  bool Keep(std::string& why) noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// Writes a whole file by AtomicFile. What is not a regular file (a terminal, a pipe with a reader) is written to
/// directly. On Windows another program's hold on the old file is waited for, half a second at most.
bool AtomicWriteFile(const std::string& path, std::string_view bytes, std::string* why = nullptr) noexcept;

/// What ends a line of a text file on this platform.
std::string_view LineEnd() noexcept;

}  // namespace glyphmotion
