// SPDX-License-Identifier: MIT
// The platform-independent part of folders: the overrides of a scripted run, and joining paths.
#include "platform/folders.h"

#include <utility>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

FolderOverrides& Overrides() { return CurrentRun().Member<FolderOverrides>(); }

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

}  // namespace

void SetFolderOverrides(FolderOverrides overrides) { Overrides() = std::move(overrides); }

const FolderOverrides& CurrentFolderOverrides() { return Overrides(); }

std::string SettingsFilePath() {
  const auto& override = Overrides().settingsFile;
  return override ? *override : JoinPath(SettingsFolder(), "tlmplgm4.ini");
}

std::string PerControlFolder() {
  const auto& override = Overrides().perControlFolder;
  return override ? *override : DataFolder();
}

std::string JoinPath(const std::string& folder, const std::string& name) {
  if (folder.empty()) return {};
  return IsSeparator(folder.back()) ? folder + name : folder + "/" + name;
}

}  // namespace glyphmotion
