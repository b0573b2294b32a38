// SPDX-License-Identifier: MIT
// Whole files, read and written in one piece. Paths are UTF-8. An empty path is no file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace glyphmotion {

/// No file of this program comes near this size; a larger one is refused before it is in memory.
constexpr std::size_t kLargestFile = std::size_t{64} << 20;

/// All bytes of a file, untranslated. Nothing when it cannot be opened or read, is a folder, or holds more than `limit`
/// bytes, and when memory is out.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit = kLargestFile) noexcept;

/// Writes a file so that it appears whole or not at all: a new file in the same folder is filled, flushed to the disk
/// and put in the place of the old one, whose permissions it keeps. On failure the old file stands as it was and the
/// new one is gone. A link is followed; what is no ordinary file (a pipe, a terminal) is written to directly. The
/// folder is not made. On Windows another program's hold on the old file is waited for, half a second at most.
///
/// Returns  false when anything could not be done.
bool AtomicWriteFile(const std::string& path, std::string_view bytes) noexcept;

/// What ends a line of a text file on this platform.
std::string_view LineEnd() noexcept;

}  // namespace glyphmotion
