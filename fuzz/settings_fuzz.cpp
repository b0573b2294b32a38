// SPDX-License-Identifier: MIT
#include "controls/variables.h"
#include "fuzz/fuzz_file.h"
#include "platform/folders.h"
#include "shell/settings.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FolderOverrides folders;
  folders.settingsFile = fuzz::FileOf(data, size);
  SetFolderOverrides(folders);
  LoadSettings();
  ResetVariables();
  return 0;
}
