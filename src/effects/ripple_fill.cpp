// SPDX-License-Identifier: MIT
#include "effects/ripple_fill.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <numbers>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// The rings of a picture of a size.
struct Rings {
  double amplitude, wavelength, offset, energy, centreX, centreY, diagonal;
  bool falloff;

  Rings(const ElasticParams& params, int width, int height)
      : amplitude(params.amplitude / 100.0),
        wavelength(params.wavelength / 100.0),
        offset(params.waveOffset / 100.0),
        energy(params.energy / 100.0),
        centreX(width * (params.centerX - 100) / 100 + width * 0.5),
        centreY(height * (params.centerY - 100) / 100 + height * 0.5),
        diagonal(std::sqrt((height - centreY) * (height - centreY) + (width - centreX) * (width - centreX))),
        falloff(params.falloff) {}

  double WaveAt(int x, int y) const {
    const double dx = x - centreX, dy = y - centreY, r = std::sqrt(dx * dx + dy * dy);
    const double wave = std::sin(r / wavelength * kTwoPi + offset) * amplitude;
    return falloff ? wave * (1.0 - r / (diagonal + 0.0001)) * energy : wave;
  }
};

// The place that mirrors `at` about a centre, which lies on a whole or a half pixel.
int Mirror(int at, double centre) { return static_cast<int>(2 * centre) - at; }

// The waves along row y. The half right of the centre mirrors the left one: the distances are the same numbers.
void FindWaves(const Rings& rings, int y, int width, double* waves) {
  for (int x = 0; x < width; ++x) {
    const int mirror = Mirror(x, rings.centreX);
    waves[x] = mirror >= 0 && mirror < x ? waves[mirror] : rings.WaveAt(x, y);
  }
}

template <int channels>
void BendRow(const DibView& from, const DibView& to, int y, const double* waves) {
  const int width = from.Width(), height = from.Height();
  std::uint8_t* out = to.Row(y);
  for (int x = 0; x < width; ++x, out += channels) {
    const double sx = std::clamp(x + waves[x], 0.0, width - 1.0), sy = std::clamp(y + waves[x], 0.0, height - 1.0);
    const int xi = static_cast<int>(sx), yi = static_cast<int>(sy);
    const float fx = static_cast<float>(sx - xi), fy = static_cast<float>(sy - yi);
    const float gx = 1 - fx, gy = 1 - fy;
    // On the far edges a neighbour is missing, but then its weight is 0: any pixel will do.
    const std::size_t right = xi + 1 < width ? channels : 0;
    const std::uint8_t* upper = from.Row(yi) + static_cast<std::size_t>(xi) * channels;
    const std::uint8_t* lower = yi + 1 < height ? upper - from.Stride() : upper;
    for (int k = 0; k < channels; ++k) {
      const float above = upper[k] * gx + upper[right + k] * fx, below = lower[k] * gx + lower[right + k] * fx;
      out[k] = static_cast<std::uint8_t>(above * gy + below * fy);
    }
  }
}

void BendRow(const DibView& from, const DibView& to, int y, const double* waves) {
  switch (from.Bits()) {
    case 8:
      return BendRow<1>(from, to, y, waves);
    case 24:
      return BendRow<3>(from, to, y, waves);
    default:
      return BendRow<4>(from, to, y, waves);
  }
}

}  // namespace

PackedDib RippleFill(const PackedDib& source, const ElasticParams& params) noexcept {
  const DibView from(source);
  if (!from || from.Bits() < 8) return {};
  const int width = from.Width(), height = from.Height();
  PackedDib bent = BlankLike(from, width, height);
  const DibView to(bent);
  const std::unique_ptr<double[]> waves(new (std::nothrow) double[static_cast<std::size_t>(width)]);
  if (!to || !waves) return {};
  const Rings rings(params, width, height);
  for (int y = 0; y < height; ++y) {
    if (EndRequested()) return {};
    // Each row is bent together with the one that mirrors it, since they have the same waves.
    const int mirror = Mirror(y, rings.centreY);
    if (mirror >= 0 && mirror < y) continue;
    FindWaves(rings, y, width, waves.get());
    BendRow(from, to, y, waves.get());
    if (mirror > y && mirror < height) BendRow(from, to, mirror, waves.get());
  }
  return bent;
}

}  // namespace glyphmotion
