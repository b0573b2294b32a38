// SPDX-License-Identifier: MIT
#include "materials/shipped.h"

#include <algorithm>
#include <filesystem>

#include "platform/ascii.h"
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

std::string ShippedLibraryPath(const std::string& name) {
  for (const std::string& folder : ShippedFolders()) {
    if (const std::string path = JoinPath(folder, name); Exists(path)) return path;
  }
  return {};
}

std::string OwnLibraryPath(const std::string& name) { return JoinPath(DataFolder(), name); }

std::string LibraryPath(const std::string& name) {
  const std::string own = OwnLibraryPath(name);
  if (Exists(own)) return own;
  const std::string shipped = ShippedLibraryPath(name);
  return shipped.empty() ? own : shipped;
}

std::string LibraryReference(const std::string& name) {
  const std::string own = OwnLibraryPath(name);
  return own.empty() ? ShippedLibraryPath(name) : own;
}

std::string LibraryPathToWrite(const std::string& name) {
  return EnsureFolder(DataFolder()) ? OwnLibraryPath(name) : std::string();
}

std::string NoShippedLibrary(const std::string& name) {
  std::string places;
  for (const std::string& folder : ShippedFolders()) places += (places.empty() ? "'" : ", '") + folder + "'";
  return "the library " + name + " is not installed: looked in " + places +
         "; set GLYPHMOTION_DATA to the folder that contains it";
}

std::vector<std::string> LibraryGroups(const std::string& extension) {
  std::vector<std::string> names;
  const std::string folder = DataFolder();
  std::error_code error;
  if (folder.empty()) return names;
  for (std::filesystem::directory_iterator it(PathOf(folder), error), end; !error && it != end; it.increment(error)) {
    if (EqualsIgnoringCase(TextOf(it->path().extension()), extension)) names.push_back(TextOf(it->path().stem()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace glyphmotion
