// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/host_contract.h"

namespace glyphmotion {

/// What the command line asks for. Names of files are UTF-8; empty: not given.
struct HostOptions {
  std::string plugin;        ///< the library; by default the one beside the program
  std::string output;        ///< each finished animation is written here
  std::string recordFolder;  ///< each run is recorded here
  std::uint32_t hostFlags = HostFlagPaletteFormat;
  bool skin = false;
  bool once = false;      ///< one run of the dialog, then the end
  bool noDialog = false;  ///< only the window at first
};

struct ParsedOptions {
  std::optional<HostOptions> options;
  std::string text;  ///< without options: the help, the version, or one sentence about what is wrong
  bool wrong = false;
};

/// `words` without the program's name.
ParsedOptions ParseHostOptions(std::vector<std::string> words);

}  // namespace glyphmotion
