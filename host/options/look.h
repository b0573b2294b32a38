// SPDX-License-Identifier: MIT
// A look: options that those of the command line override.
#pragma once

#include <string>
#include <vector>

#include "host/options/option_table.h"

namespace glyphmotion {

struct Look {
  struct Entry {
    std::string option;               ///< "--fill", "--set"
    std::vector<std::string> values;  ///< as typed; of --font the families in order of preference
    std::string origin;               ///< "the look 'my.toml', line 3"
  };
  std::vector<Entry> entries;  ///< a --set each for the table of settings
};

/// Whether a look may hold the option. A look says how a text looks and moves; it names no text, no output and no other
/// file, so that nobody's look reads or writes anything.
bool MayStandInLook(const OptionRow& row);
/// The long names of these options, without dashes.
std::vector<std::string> LookOptionNames();

}  // namespace glyphmotion
