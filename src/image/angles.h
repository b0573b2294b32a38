// SPDX-License-Identifier: MIT
// Degrees and radians. The two conversions to radians round differently, and whole pixels depend on it.
#pragma once

#include <numbers>

namespace glyphmotion {

constexpr double kDegreesPerRadian = 180 / std::numbers::pi;

/// Multiplied first, then divided.
constexpr double Radians(double degrees) noexcept { return degrees * std::numbers::pi / 180; }
/// Multiplied by one degree.
constexpr double RadiansByDegree(double degrees) noexcept { return degrees * (std::numbers::pi / 180); }

}  // namespace glyphmotion
