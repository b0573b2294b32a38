// SPDX-License-Identifier: MIT
#include "effects/column_profile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "image/angles.h"

namespace glyphmotion {

void SetBumpProfile(std::span<float> profile, int start, int length) noexcept {
  std::fill(profile.begin(), profile.end(), 0.0f);
  const auto end = static_cast<std::int64_t>(profile.size());
  for (std::int64_t j = 0, x = start; j < length && x >= 0 && x < end; ++j, ++x) {
    profile[static_cast<std::size_t>(x)] +=
        static_cast<float>(std::sin(Radians(static_cast<double>(j) / length * 180.0)));
  }
}

void SetHorizonCurve(std::span<double> curve, double v, bool alternate, int radius) noexcept {
  std::fill(curve.begin(), curve.end(), 0.0);
  const int count = static_cast<int>(curve.size());
  const double height = v != kSampleHorizon ? v : alternate ? 0.6875 : 1.0;
  const double angle = Radians(height * 90.0);
  const std::int64_t wanted =
      alternate ? static_cast<std::int64_t>(std::cos(angle) * count) + std::int64_t{count} * radius / 100
                : static_cast<std::int64_t>(std::sin(angle) * count);
  const int length = static_cast<int>(std::min<std::int64_t>(count, wanted));
  if (length < 1) return;
  const int start = (count - length) / 2;
  for (int k = 0; k < length; ++k) {
    curve[static_cast<std::size_t>(start + k)] = std::sin(Radians(k * 180.0 / length)) * height;
  }
}

}  // namespace glyphmotion
