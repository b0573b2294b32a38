// SPDX-License-Identifier: MIT
// The whirl: the middle of a picture turns furthest, the rim of its disc not at all.
#pragma once

#include <vector>

#include "effects/disc_warp.h"
#include "image/packed_dib.h"

namespace glyphmotion {

/// Tables that the twists of one run share; a cache.
struct TwistTables {
  struct Entry {
    DiscQuarter quarter;
    std::vector<double> fall;          ///< by place: 1 at the centre, 0 at the rim
    bool turned = false;               ///< cosine and sine are those of `angle`
    int angle = 0;                     ///< degrees
    std::vector<double> cosine, sine;  ///< by place
  };
  RecentSizes<Entry, 2> recent;
};

/// A run's masks at twice their size; a text at rest has the same masks in every frame.
class DoubledMasks {
 public:
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

  /// The mask scaled to 200 percent, owned here and valid until the next call; null on failure.
  const PackedDib* Double(const PackedDib& mask);

 private:
  struct Entry {
    PackedDib mask, doubled;
  };
  Entry entries_[3];  // shadow, text, outline
  int next_ = 0;
};

/// Turns the picture by `angleDegrees` at its centre; the angle falls with the square of the distance to 0 at the rim.
/// Returns a new bitmap of the same size, depth and palette; empty for depths other than 8 and 24 bits and on failure.
PackedDib Twist(const PackedDib& source, int angleDegrees, TwistTables& tables);

/// Twist; with `smooth`, at twice the size and scaled back. `doubled` may cache the enlarged source.
PackedDib TwistMask(const PackedDib& source, int angleDegrees, bool smooth, TwistTables& tables,
                    DoubledMasks* doubled = nullptr);

/// The angle in whole degrees at `phase`, 0 to 1: it rises to `degrees` at 0.5 and falls back as it
/// rose.
int TwistAngle(int degrees, double phase) noexcept;

}  // namespace glyphmotion
