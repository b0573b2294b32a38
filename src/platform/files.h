// SPDX-License-Identifier: MIT
// Reads and writes whole files. Paths are UTF-8; an empty path names no file.
//
// `why`, where a function takes one, gets the reason of a failure as the second half of a sentence: "'a.gif' cannot be
// written: " + why.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

namespace glyphmotion {

/// No file of this program is nearly as large; larger ones are refused before they are loaded.
constexpr std::size_t kLargestFile = std::size_t{64} << 20;

/// All bytes of a regular file, untranslated. Nothing when it cannot be opened or read, has more than `limit` bytes, is
/// a folder, a pipe or a device (on which it never blocks), or when out of memory.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit = kLargestFile,
                                         std::string* why = nullptr) noexcept;

struct FileCloser {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// A file to read piece by piece. The streams of C++ would bring their locales, a tenth of a WebAssembly module.
using ReadableFile = std::unique_ptr<std::FILE, FileCloser>;

/// Empty when the file cannot be opened.
ReadableFile OpenToRead(const std::string& path) noexcept;

/// Whether a file can have this name.
inline bool IsPath(std::string_view path) noexcept { return !path.empty() && path.find('\0') == std::string::npos; }

/// The reason when memory ran out.
inline constexpr std::string_view kNoMemoryReason = "out of memory";

/// ReadWholeFile for a file whose absence is not an error: throws std::bad_alloc when out of memory, so that a lack of
/// memory is not taken for a lack of the file.
inline std::optional<std::string> ReadFileIfAny(const std::string& path) {
  std::string why;
  auto bytes = ReadWholeFile(path, kLargestFile, &why);
  if (!bytes && why == kNoMemoryReason) throw std::bad_alloc();
  return bytes;
}

/// A file that appears whole or not at all. Until Keep, an existing file of that name is untouched; without Keep, and
/// after any failure, nothing is left behind. Where the system supports unnamed files, the new one gets its name only
/// when complete; elsewhere it has a temporary name beside the target until then. Temporary files of killed processes
/// are removed by the next write to the folder. Symbolic links are followed, even to a file that does not exist yet.
/// The new file keeps the old one's permissions and, if this user may set it, its owner. Folders are not created.
class AtomicFile {
 public:
  /// Converts to false when the file cannot be created: a folder, a device, a read-only file, no permission.
  static AtomicFile Begin(const std::string& path, std::string& why) noexcept;
  explicit operator bool() const noexcept { return state_ != nullptr; }
  /// Appends. After a failure all further calls fail, including Keep.
  bool Write(std::string_view bytes) noexcept;
  /// Why a write failed, as in `why`; empty if none failed.
  std::string Trouble() const;
  /// Flushes the file to disk and gives it its name. The object is empty afterwards.
  bool Keep(std::string& why) noexcept;

 private:
  struct State;
  struct Closer {
    void operator()(State* state) const noexcept;
  };
  using Owner = std::unique_ptr<State, Closer>;
  // The machine's part of Begin and Keep; may throw std::bad_alloc.
  static Owner Open(const std::string& path, std::string& why);
  static bool Finish(State& state, std::string& why);

  Owner state_;
};

/// Writes a whole file with AtomicFile. A target that is not a regular file (a terminal, a pipe with a reader) is
/// written directly. On Windows it retries for up to half a second while another program uses the old file.
bool AtomicWriteFile(const std::string& path, std::string_view bytes, std::string* why = nullptr) noexcept;

/// The line ending of text files on this platform.
std::string_view LineEnd() noexcept;

}  // namespace glyphmotion
