// SPDX-License-Identifier: MIT
// The picture of one gumdrop: a dome of ellipses, or a flat disc, drawn four times too large and reduced to a quarter.
#pragma once

#include <cstdint>
#include <vector>

namespace glyphmotion {

/// A drop's coverage: side x side weights, rows top down.
struct DropImage {
  int side = 0;
  std::vector<std::uint8_t> weights;
};

/// The weights are those of ResampleByPercent(large, 25, 25), `large` being an 8-bit bitmap of 4 * diameter on each
/// side. With `bevel` it has an ellipse in each pixel's distance from the edge, brightest between rim and centre, else
/// one ellipse of the level `strength` (0 to 255). diameter: at least 2. False when out of memory or when the run is to
/// end. Throws std::bad_alloc.
bool DrawGumdrop(int diameter, int strength, bool bevel, DropImage& image);

}  // namespace glyphmotion
