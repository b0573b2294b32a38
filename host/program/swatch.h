// SPDX-License-Identifier: MIT
// glyphmotion swatch MATERIAL -o FILE.png: a look at a material by itself.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

/// True when the words after the program's name ask for a swatch: "swatch" alone, or followed by a material.
bool IsSwatch(const std::vector<std::string>& words);

/// Draws the material (--width and --height in pixels, 256 each) and writes the picture. An empty text, or one
/// sentence; `badUsage`: the words are wrong, rather than the disk full or memory short.
std::string WriteSwatch(const std::vector<std::string>& words, bool& badUsage);

}  // namespace glyphmotion
