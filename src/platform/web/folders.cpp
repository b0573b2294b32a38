// SPDX-License-Identifier: MIT
// Folders of the module's own file system. What the machine around it has of them is mounted there.
#include "platform/folders.h"

#include <cstdlib>

namespace glyphmotion {
namespace {

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

}  // namespace glyphmotion
