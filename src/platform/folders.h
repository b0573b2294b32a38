// SPDX-License-Identifier: MIT
// The locations of files, and the owner of the machine. Paths are UTF-8; an empty path means "no such location", which
// callers treat as a missing file. Folders end in a separator. Only EnsureFolder creates any.
//
//   settings   Windows     %APPDATA%\Tessaloom
//              elsewhere   $XDG_CONFIG_HOME/glyphmotion, or ~/.config/glyphmotion
//   data       Windows     %APPDATA%\Tessaloom\Glyphmotion 4
//              elsewhere   $XDG_DATA_HOME/glyphmotion, or ~/.local/share/glyphmotion
//
// GLYPHMOTION_HOME, when set, is the settings folder, and its subfolder "data" the data folder.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace glyphmotion {

std::string SettingsFolder();
std::string DataFolder();
std::string DocumentsFolder();
/// The folder of the running library or program.
std::string OwnFolder();
/// The search path of the shipped libraries (.fft, .mtx, .fll), in order: the folder in the environment variable
/// GLYPHMOTION_DATA; the folder of the program or library, and share/glyphmotion in its prefix, which may have been
/// moved; and off Windows, for applications that link the library, share/glyphmotion of the installed CMake package and
/// of the configured install prefix.
std::vector<std::string> ShippedFolders();

std::string RegisteredOwner();
std::string RegisteredOrganization();

/// `folder` + `name`, with one separator between; empty when `folder` is.
std::string JoinPath(const std::string& folder, const std::string& name);
/// Creates the folder and its parents. False on failure.
bool EnsureFolder(const std::string& folder) noexcept;

/// Folders that a scripted run overrides for itself. An empty string means "no such location": nothing is read there or
/// written there.
struct FolderOverrides {
  std::optional<std::string> settingsFile;      ///< full path of the settings file
  std::optional<std::string> perControlFolder;  ///< where controls keep their .mtrl files between sessions
  std::optional<std::string> dataFolder;
  bool hostWritesSettings = false;  ///< the dialog reads the settings file; the host writes it
};
void SetFolderOverrides(FolderOverrides overrides);
const FolderOverrides& CurrentFolderOverrides();

/// The settings file's path, override applied; may be empty.
std::string SettingsFilePath();
/// The folder of the per-control files, override applied; may be empty.
std::string PerControlFolder();

}  // namespace glyphmotion
