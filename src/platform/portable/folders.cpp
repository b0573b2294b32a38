// SPDX-License-Identifier: MIT
// Folders according to the XDG base directories.
#include "platform/folders.h"

#include <dlfcn.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <sstream>

#include "platform/files.h"

/// Defined in applications that use the installed CMake package, which knows where it lies; see cmake/.
extern "C" __attribute__((weak)) const char* GlyphmotionDataFolder();

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string WithSeparator(std::string folder) {
  if (!folder.empty() && folder.back() != '/') folder += '/';
  return folder;
}

/// A field of the user's passwd entry, read into a local buffer (getpwuid's is shared by the process); empty when there
/// is none.
std::string UserField(char* passwd::*field) {
  std::array<char, 4096> memory{};
  passwd entry{}, *found = nullptr;
  if (getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found) != 0 || !found || !(found->*field)) return {};
  return found->*field;
}

std::string HomeFolder() {
  if (std::string home = Environment("HOME"); !home.empty()) return WithSeparator(std::move(home));
  return WithSeparator(UserField(&passwd::pw_dir));
}

/// A base directory; relative values of the variable are ignored.
std::string BaseFolder(const char* variable, const char* underHome) {
  const std::string folder = Environment(variable);
  if (!folder.empty() && folder.front() == '/') return JoinPath(folder, "glyphmotion/");
  return JoinPath(HomeFolder(), std::string(underHome) + "/glyphmotion/");
}

/// The value of XDG_DOCUMENTS_DIR in user-dirs.dirs, whose lines read NAME="$HOME/Documents".
std::string UserDocuments(const std::string& home) {
  const std::string config = Environment("XDG_CONFIG_HOME");
  const auto bytes = ReadWholeFile(JoinPath(config.empty() ? home + ".config" : config, "user-dirs.dirs"));
  std::istringstream file(bytes.value_or(std::string()));
  const std::string start = "XDG_DOCUMENTS_DIR=\"", homeName = "$HOME/";
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(start, 0) != 0) continue;
    const std::string value = line.substr(start.size(), line.find('"', start.size()) - start.size());
    return value.rfind(homeName, 0) == 0 ? home + value.substr(homeName.size()) : value;
  }
  return {};
}

bool IsFolder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

void InThisModule() {}

}  // namespace

std::string SettingsFolder() {
  const std::string home = Environment("GLYPHMOTION_HOME");
  return home.empty() ? BaseFolder("XDG_CONFIG_HOME", ".config") : WithSeparator(home);
}

std::string DataFolder() {
  if (const auto& override = CurrentFolderOverrides().dataFolder) return WithSeparator(*override);
  const std::string home = Environment("GLYPHMOTION_HOME");
  return home.empty() ? BaseFolder("XDG_DATA_HOME", ".local/share") : WithSeparator(home) + "data/";
}

std::string DocumentsFolder() {
  const std::string home = HomeFolder();
  if (home.empty()) return {};
  for (const std::string& folder : {Environment("XDG_DOCUMENTS_DIR"), UserDocuments(home), home + "Documents"}) {
    if (!folder.empty() && IsFolder(folder)) return WithSeparator(folder);
  }
  return home;
}

std::string OwnFolder() {
  // The loader names a shared library by its path, but the program by its argv[0].
  Dl_info module{};
  std::error_code error;
  fs::path path;
  if (dladdr(reinterpret_cast<void*>(&InThisModule), &module) && module.dli_fname && module.dli_fname[0] == '/') {
    path = fs::canonical(module.dli_fname, error);
  }
  if (path.empty()) path = fs::read_symlink("/proc/self/exe", error);
  return path.empty() ? "" : WithSeparator(path.parent_path().string());
}

std::vector<std::string> ShippedFolders() {
  std::vector<std::string> folders = {WithSeparator(Environment("GLYPHMOTION_DATA"))};
  if (const std::string own = OwnFolder(); !own.empty()) {
    for (const char* place : {"", "share/glyphmotion/", "../share/glyphmotion/", "../../share/glyphmotion/"}) {
      folders.push_back(fs::path(own + place).lexically_normal().string());
    }
  }
  if (GlyphmotionDataFolder) folders.push_back(WithSeparator(GlyphmotionDataFolder()));
  folders.emplace_back(GLYPHMOTION_INSTALLED_DATA "/");
  std::erase(folders, "");
  return folders;
}

std::string RegisteredOwner() {
  const std::string details = UserField(&passwd::pw_gecos);
  const std::string name = details.substr(0, details.find(','));
  return !name.empty() ? name : UserField(&passwd::pw_name);
}

std::string RegisteredOrganization() { return {}; }

}  // namespace glyphmotion
