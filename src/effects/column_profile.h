// SPDX-License-Identifier: MIT
// Heights along a line of text: one value a column of a picture enlarged four times, from which column warps are made.
#pragma once

#include <span>

namespace glyphmotion {

/// Zeroes the profile and adds half a sine of height 1 over `length` columns from `start` on, as far as they lie in the
/// profile: what would lie beyond the right end is lost. A negative or zero length adds nothing.
void SetBumpProfile(std::span<float> profile, int start, int length) noexcept;

/// As the height: selects the curve of the sample, 0.6875 high in the alternate form, otherwise 1.
constexpr double kSampleHorizon = 100.99;

/// Sets the curve to half a sine of height `v` (0 to 1) about its middle, zero elsewhere. The plain form widens from
/// nothing to the whole curve as the height grows; the `alternate` form narrows from the whole to `radius` percent.
void SetHorizonCurve(std::span<double> curve, double v, bool alternate, int radius) noexcept;

}  // namespace glyphmotion
