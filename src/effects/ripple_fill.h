// SPDX-License-Identifier: MIT
// A picture bent by rings that run outward from its middle.
#pragma once

#include "image/packed_dib.h"

namespace glyphmotion {

/// The parameter block of Elastic. Whole numbers are hundredths or percent.
struct ElasticParams {
  double phase = 0;       ///< 0: no ripple; 1: the strongest
  int centerX = 100;      ///< percent of the width; 100 is the middle
  int centerY = 100;      ///< percent of the height
  int amplitude = 2500;   ///< hundredths of a pixel
  int wavelength = 1200;  ///< hundredths of a pixel
  int waveOffset = 180;   ///< hundredths of a radian
  int energy = 20;        ///< percent; counts with `falloff` only
  bool falloff = true;    ///< the ripple dies towards the corners
};

/// A new bitmap of the size, depth (8, 24 or 32 bits) and palette of `source`: each pixel is taken, between pixels,
/// from a place shifted by the ring's wave, alike on both axes. Empty when out of memory.
PackedDib RippleFill(const PackedDib& source, const ElasticParams& params) noexcept;

}  // namespace glyphmotion
