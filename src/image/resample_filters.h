// SPDX-License-Identifier: MIT
// The kernels for resampling. Two of them are in use; the row numbers are fixed.
#pragma once

namespace glyphmotion {

struct ResampleFilter {
  double (*kernel)(double x);  ///< even; 0 beyond the support
  double support;              ///< radius in source pixels, at a scale of 1 or more
};

constexpr int kMitchellFilter = 12;  ///< when the picture grows
constexpr int kLanczosFilter = 13;   ///< otherwise
extern const ResampleFilter kResampleFilters[16];

}  // namespace glyphmotion
