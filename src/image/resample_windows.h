// SPDX-License-Identifier: MIT
// The windows of a resampling along one axis, for callers that generate the source pixels on the fly.
#pragma once

#include "image/resample_filters.h"
#include "image/tap_sums.h"

namespace glyphmotion {

/// The source positions of each output position along one axis: those from first[c] on have the weights taps[c].
struct Contributions {
  int source = 0, target = 0;  ///< lengths
  Scratch<int> first;
  Scratch<Taps> taps;
  Scratch<double> exact;
  Scratch<float> fast;
};

/// The windows that ResampleToSize uses for an axis of those lengths; false when out of memory.
bool FindContributions(int source, int target, const ResampleFilter& filter, Contributions& list) noexcept;

/// True when ResampleToSize does the vertical pass first.
constexpr bool ResamplesDownFirst(int sourceWidth, int sourceHeight, int width, int height) {
  return (static_cast<long long>(sourceHeight) + height) * width <=
         (static_cast<long long>(sourceWidth) + width) * height;
}

}  // namespace glyphmotion
