// SPDX-License-Identifier: MIT
// The whirl: the middle of a picture turns furthest, the rim of its disc not at all.
#pragma once

#include <vector>

#include "effects/disc_warp.h"
#include "image/packed_dib.h"

namespace glyphmotion {

/// What twists of one run share. Pixels never depend on it.
struct TwistTables {
  struct Entry {
    DiscQuarter quarter;
    std::vector<double> fall;          ///< by place: 1 at the centre, 0 at the rim
    bool turned = false;               ///< the two below stand for `angle`
    int angle = 0;                     ///< degrees
    std::vector<double> cosine, sine;  ///< by place
  };
  RecentSizes<Entry, 2> recent;
};

/// Masks of a run at twice their size. A text that does not move gives the same masks in every frame.
class DoubledMasks {
 public:
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

  /// The mask scaled to 200 percent, owned here and standing until the next call; null on failure.
  const PackedDib* Double(const PackedDib& mask);

 private:
  struct Entry {
    PackedDib mask, doubled;
  };
  Entry entries_[3];  // shadow, text, outline
  int next_ = 0;
};

/// The picture turned by `angleDegrees` at its centre, the angle falling with the square of the distance to 0 at the
/// rim, as a new bitmap of the same size, depth and palette. 8 and 24 bits; nothing for others and on failure.
PackedDib Twist(const PackedDib& source, int angleDegrees, TwistTables& tables);

/// Twist; with `smooth`, done at twice the size and scaled back. `doubled` may remember the enlarged source.
PackedDib TwistMask(const PackedDib& source, int angleDegrees, bool smooth, TwistTables& tables,
                    DoubledMasks* doubled = nullptr);

/// The whole degrees of a run that climbs to twice `degrees` times a half and falls back: `phase` from 0 to 1, 0.5
/// being the strongest.
int TwistAngle(int degrees, double phase) noexcept;

}  // namespace glyphmotion
