// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/host_contract.h"

namespace glyphmotion {

/// The command line's options. File names are UTF-8; empty: not given.
struct HostOptions {
  std::string plugin;        ///< the library; by default the one beside the program
  std::string output;        ///< each finished animation is written here
  std::string recordFolder;  ///< each run is recorded here
  std::uint32_t hostFlags = HostFlagPaletteFormat;
  bool skin = false;
  bool once = false;      ///< run the dialog once, then exit
  bool noDialog = false;  ///< open only the window
};

struct ParsedOptions {
  std::optional<HostOptions> options;
  std::string text;  ///< without options: the help, the version, or one sentence about an error
  bool wrong = false;
};

/// `words` excludes the program's name.
ParsedOptions ParseHostOptions(std::vector<std::string> words);

}  // namespace glyphmotion
