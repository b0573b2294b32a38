// SPDX-License-Identifier: MIT
// The bulge: the middle of a picture is magnified towards the viewer.
#pragma once

#include <vector>

#include "effects/disc_warp.h"

namespace glyphmotion {

/// What bulges of one run share. Pixels never depend on it.
struct BulgeTables {
  struct Entry {
    DiscQuarter quarter;
    std::vector<double> sine;    ///< by place: from 0 at the centre to 1 at the rim
    int percent = 0;             ///< that `factor` was computed for; 0: none yet
    std::vector<double> factor;  ///< by place: of the distance from the centre
  };
  RecentSizes<Entry, 2> recent;
};

/// The picture bulged by -percent / 100 as a new bitmap of the same size, depth and palette; 0 gives a duplicate. 8 and
/// 24 bits; nothing for others and on failure.
PackedDib BulgeBitmap(const PackedDib& source, int percent, BulgeTables& tables);

}  // namespace glyphmotion
