// SPDX-License-Identifier: MIT
// Where files live, and whose machine this is. Paths are UTF-8; an empty path means "there is no such place", which
// callers treat as the absence of a file. Folders end in a separator. None is created here except by EnsureFolder.
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
/// Where the shipped libraries (.fft, .mtx, .fll) may lie, in the order in which to look: the folder in the environment
/// variable GLYPHMOTION_DATA; that of the program or library itself, and the share/glyphmotion of its prefix, wherever
/// that has been moved; and off Windows, for applications elsewhere that link the library, the share/glyphmotion of the
/// installed CMake package, and the one for which the library was configured.
std::vector<std::string> ShippedFolders();

std::string RegisteredOwner();
std::string RegisteredOrganization();

/// `folder` + `name`, with one separator between; empty when `folder` is.
std::string JoinPath(const std::string& folder, const std::string& name);
/// Makes the folder and its parents. False when it cannot be made.
bool EnsureFolder(const std::string& folder) noexcept;

/// What a scripted run changes, for itself. An empty string means "no such place": nothing is read from there and
/// nothing written.
struct FolderOverrides {
  std::optional<std::string> settingsFile;      ///< the whole path of the settings file
  std::optional<std::string> perControlFolder;  ///< where controls keep their .mtrl files between sessions
  std::optional<std::string> dataFolder;
  bool hostWritesSettings = false;  ///< the dialog reads the settings file and leaves the writing to its host
};
void SetFolderOverrides(FolderOverrides overrides);
const FolderOverrides& CurrentFolderOverrides();

/// The settings file's path, override applied; may be empty.
std::string SettingsFilePath();
/// The folder of the per-control files, override applied; may be empty.
std::string PerControlFolder();

}  // namespace glyphmotion
