// SPDX-License-Identifier: MIT
// Two runs of 64 frames of 600 x 120 for benchmarks: a noisy gradient that drifts (about 834,000 colours in all), and
// antialiased text over a flat background (about 5,600).
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "image/frame_list.h"
#include "image/packed_dib.h"
#include "image/quantise.h"

namespace glyphmotion {

constexpr int kWidth = 600, kHeight = 120, kFrames = 64;
enum Kind { kGradient, kText };

inline std::uint32_t Noise(std::uint32_t& state) { return (state = state * 214013 + 2531011) >> 16; }

// How far a place lies inside a stroke, 0 to 1, with an edge of some pixels.
inline double Stroke(double x, double y) {
  return std::clamp(std::sin(x / 6.0 + 2.0 * std::sin(y / 15.0)) * 4.0 - 1.5, 0.0, 1.0);
}

inline PackedDib MakeFrame(Kind kind, int frame, std::uint32_t& random) {
  PackedDib dib = BlankDib(kWidth, kHeight, nullptr, 24);
  const DibView view(dib);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const double along = static_cast<double>(x) / kWidth, across = static_cast<double>(y) / kHeight;
      double red = 235, green = 240, blue = 245;
      if (kind == kGradient) {
        const double turn = along * 3 + frame * 0.1;
        const auto wave = [&](double phase) {
          return 127 + 80 * std::sin(turn + phase) + 24 * across * 0.8 + static_cast<int>(Noise(random) % 21);
        };
        red = wave(0);
        green = wave(2);
        blue = wave(4);
      } else if (y > 20 && y < 100 && x > 30 && x < 570) {
        const double cover = Stroke(x + frame * 0.7, y), shade = std::floor(along * 18);
        red += (shade * 12 - red) * cover;
        green += (30 - green) * cover;
        blue += (200 - shade * 6 - blue) * cover;
      }
      view.SetPixel(x, y, MakeColour(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue)));
    }
  }
  return dib;
}

struct Run {
  FrameList frames;
  std::vector<PackedDib> images;
  int colours = 0;
  Palette palette{};
  int count = 256;
};

inline const Run& RunOf(std::int64_t kind) {
  static Run runs[2];
  Run& run = runs[kind];
  if (run.frames.count) return run;
  std::uint32_t random = 1;
  std::vector<bool> seen(std::size_t{1} << 24);
  for (int i = 0; i < kFrames; ++i) {
    FrameRecord record;
    run.images.push_back(MakeFrame(static_cast<Kind>(kind), i, random));
    record.image = DuplicateDib(run.images.back()).Release();
    AppendFrame(run.frames, record);
    const DibView view(record.image);
    for (int p = 0; p < kWidth * kHeight; ++p) seen[view.GetPixel(p % kWidth, p / kWidth)] = true;
  }
  run.colours = static_cast<int>(std::count(seen.begin(), seen.end(), true));
  QuantiseFrames(run.frames, run.count, run.palette);
  return run;
}

}  // namespace glyphmotion
