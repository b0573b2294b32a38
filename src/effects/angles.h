// SPDX-License-Identifier: MIT
// Degrees to radians, in the two orders that effects have. They round differently, and whole pixels depend on it.
#pragma once

#include <numbers>

namespace glyphmotion {

/// Multiplied first, then divided.
constexpr double Radians(double degrees) noexcept { return degrees * std::numbers::pi / 180; }
/// Multiplied by one degree.
constexpr double RadiansByDegree(double degrees) noexcept { return degrees * (std::numbers::pi / 180); }

}  // namespace glyphmotion
