// SPDX-License-Identifier: MIT
#include "materials/library_file.h"

#include <algorithm>
#include <filesystem>
#include <limits>

namespace glyphmotion {
namespace {

// Paths are UTF-8 on every platform.
std::filesystem::path PathOf(const std::string& path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

}  // namespace

FileReader::FileReader(const std::string& path) noexcept {
  try {
    const std::filesystem::path file = PathOf(path);
    // Only regular files: reading a pipe or a device might never end.
    if (!std::filesystem::is_regular_file(file)) return;
    remaining_ = std::min<std::uint64_t>(std::filesystem::file_size(file), kMaxLibraryBytes);
    in_ = OpenToRead(path);
  } catch (...) {
  }
  if (!in_) remaining_ = 0;
}

bool FileReader::Read(void* bytes, std::size_t count) noexcept {
  if (!in_ || count > remaining_) return false;
  remaining_ -= count;
  return std::fread(bytes, 1, count, in_.get()) == count;
}

bool FileReader::Skip(std::uint64_t count) noexcept {
  if (!in_ || count > remaining_) return false;
  remaining_ -= count;
  return std::fseek(in_.get(), static_cast<long>(count), SEEK_CUR) == 0;
}

bool FileExists(const std::string& path) noexcept {
  try {
    std::error_code error;
    return std::filesystem::exists(PathOf(path), error) || error;
  } catch (...) {
    return true;
  }
}

bool RemoveFile(const std::string& path) noexcept {
  try {
    std::error_code error;
    return std::filesystem::remove(PathOf(path), error);
  } catch (...) {
    return false;
  }
}

void BackUpFile(const std::string& path) noexcept {
  try {
    const std::filesystem::path file = PathOf(path), copy = PathOf(path + ".bak");
    const auto bytes = ReadWholeFile(path, std::numeric_limits<std::size_t>::max());
    if (!bytes) return;
    // The copy of a read-only file is writeable, or it would block the next copy.
    constexpr auto writeable = std::filesystem::perms::owner_write;
    std::error_code error;
    std::filesystem::permissions(copy, writeable, std::filesystem::perm_options::add, error);
    if (!AtomicWriteFile(path + ".bak", *bytes)) return;
    std::filesystem::permissions(copy, std::filesystem::status(file, error).permissions() | writeable, error);
  } catch (...) {
  }
}

}  // namespace glyphmotion
