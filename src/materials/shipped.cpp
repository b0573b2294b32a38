// SPDX-License-Identifier: MIT
#include "materials/shipped.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "materials/library_file.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

std::filesystem::path PathOf(const std::string& path) {
  return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

std::string TextOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

bool Exists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(PathOf(path), error);
}

}  // namespace

std::string LibraryPath(const std::string& name) {
  const std::string own = JoinPath(DataFolder(), name);
  if (Exists(own)) return own;
  const std::string shipped = JoinPath(ShippedFolder(), name);
  if (!Exists(shipped)) return own;
  std::string bytes;
  const bool copied =
      !own.empty() && ReadFileBytes(shipped, bytes) && EnsureFolder(DataFolder()) && AtomicWriteFile(own, bytes);
  return copied ? own : shipped;
}

std::string LibraryPathToWrite(const std::string& name) {
  const std::string own = JoinPath(DataFolder(), name);
  return LibraryPath(name) == own ? own : std::string();
}

std::vector<std::string> LibraryGroups(const std::string& extension) {
  std::vector<std::string> names;
  const std::string folder = DataFolder();
  std::error_code error;
  if (folder.empty()) return names;
  for (std::filesystem::directory_iterator it(PathOf(folder), error), end; !error && it != end; it.increment(error)) {
    std::string ending = TextOf(it->path().extension());
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    if (ending == extension) names.push_back(TextOf(it->path().stem()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace glyphmotion
