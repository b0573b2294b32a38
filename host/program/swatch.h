// SPDX-License-Identifier: MIT
// glyphmotion swatch MATERIAL -o FILE.png: renders a material by itself.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

/// True when the words after the program's name ask for a swatch: "swatch" alone, or followed by a word that is not an
/// option.
bool IsSwatch(const std::vector<std::string>& words);

/// Draws the material (--width and --height in pixels, 256 by default) and writes the picture. Returns an empty text,
/// or one sentence on failure. `badUsage` is set when the words are wrong, as opposed to a full disk or lack of memory.
std::string WriteSwatch(const std::vector<std::string>& words, bool& badUsage);

}  // namespace glyphmotion
