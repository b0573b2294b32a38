// SPDX-License-Identifier: MIT
// The scatter: every pixel is taken from a random place near its own.
#pragma once

#include <cstdint>
#include <vector>

#include "image/packed_dib.h"

namespace glyphmotion {

/// What scatters of one run share. Pixels never depend on it.
struct ScatterTables {
  std::uint32_t seed = 0;
  std::vector<std::uint32_t> states;  ///< of the generator, after each draw from `seed` on
};

/// Each pixel of the result is the source's at a random place up to radius / 2 away, or the source's own where that
/// lies outside; then the whole is blurred with a softness of radius + 2. Seeds the random generator and takes two
/// values from it a pixel. A radius below 1 gives a duplicate and leaves the generator alone.
///
/// Returns a new bitmap of the same size, depth and palette, or nothing. 8 and 24 bits.
PackedDib Scatter(const PackedDib& source, int radius, std::uint32_t seed, ScatterTables& tables);

}  // namespace glyphmotion
