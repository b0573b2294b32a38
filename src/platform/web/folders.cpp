// SPDX-License-Identifier: MIT
// Folders of the module's own file system. What the machine around it has of them is mounted there.
#include "platform/folders.h"

#include <cstdlib>
#include <filesystem>

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

std::string Home() {
  const char* home = std::getenv("GLYPHMOTION_HOME");
  std::string folder = home && *home ? home : "/glyphmotion";
  if (folder.back() != '/') folder += '/';
  return folder;
}

}  // namespace

std::string SettingsFolder() { return Home(); }

std::string DataFolder() {
  if (const auto& override = CurrentFolderOverrides().dataFolder) {
    return override->empty() || override->back() == '/' ? *override : *override + '/';
  }
  return Home() + "data/";
}

std::string DocumentsFolder() { return "/"; }

std::string OwnFolder() { return "/"; }

std::vector<std::string> ShippedFolders() { return {"/share/glyphmotion/"}; }

std::string RegisteredOwner() { return {}; }

std::string RegisteredOrganization() { return {}; }

bool EnsureFolder(const std::string& folder) noexcept try {
  if (folder.empty()) return false;
  std::error_code error;
  const fs::path path = fs::path(folder) / "";  // with or without a trailing separator
  fs::create_directories(path.parent_path(), error);
  return fs::is_directory(path, error);
} catch (...) {
  return false;
}

}  // namespace glyphmotion
