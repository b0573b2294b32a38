// SPDX-License-Identifier: MIT
// Looks: TOML files of long option names without their dashes, which the options of the command line override. The
// first line, a comment, says what the look shows.
//
//   # Neon: glass tubes at night
//   effect = "laser"
//   font = ["DejaVu Sans", "Liberation Sans"]    # the first one that is installed
//   bold = true
//   [set]
//   "@beamsize" = 3
#pragma once

#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "host/options/look.h"

namespace glyphmotion {

/// The look of a name, among the user's own and the shipped ones, or of a file: a word with a slash or that ends in
/// ".toml". Throws UsageError with the file, the line and the key.
Look ReadLook(const std::string& nameOrFile);

/// The text of a look.
std::string LookText(const std::vector<Look::Entry>& entries);

}  // namespace glyphmotion
