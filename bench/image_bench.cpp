// SPDX-License-Identifier: MIT
// Bitmaps, filters and the drawing surface, at the sizes of a text frame (600 x 120) and of its fourfold (2400 x 480).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "image/filters.h"
#include "image/packed_dib.h"
#include "image/surface.h"

namespace glyphmotion {
namespace {

// Smooth-edged strokes, a third of the area, with an empty frame: what a text mask looks like to a filter.
PackedDib Strokes(int width, int height, int depth) {
  PackedDib dib = BlankDib(width, height, &GreyRamp(), depth);
  const DibView view(dib);
  const double size = height / 120.0;
  for (int y = height / 8; y < height * 7 / 8; ++y) {
    for (int x = width / 20; x < width * 19 / 20; ++x) {
      const double wave = std::sin(x / (6.0 * size) + 2.0 * std::sin(y / (15.0 * size))) * 4.0 - 1.5;
      const auto level = static_cast<std::uint32_t>(std::clamp(wave, 0.0, 1.0) * 255.0);
      view.SetPixel(x, y, depth == 8 ? level : level * 0x010101u);
    }
  }
  return dib;
}

// Every byte its own: nothing can be skipped, and no two results are alike.
PackedDib Noise(int width, int height, int depth) {
  PackedDib dib = BlankDib(width, height, &GreyRamp(), depth);
  const DibView view(dib);
  std::uint32_t state = 1;
  for (int y = 0; y < height; ++y) {
    for (std::size_t i = 0; i < view.Stride(); ++i)
      view.Row(y)[i] = static_cast<std::uint8_t>((state = state * 214013 + 2531011) >> 16);
  }
  return dib;
}

PackedDib Source(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0)), height = static_cast<int>(state.range(1));
  return state.range(3) ? Noise(width, height, static_cast<int>(state.range(2)))
                        : Strokes(width, height, static_cast<int>(state.range(2)));
}

void BM_Blur(benchmark::State& state) {
  const PackedDib source = Source(state);
  for (auto _ : state) benchmark::DoNotOptimize(Blur(source, static_cast<int>(state.range(4))));
}
BENCHMARK(BM_Blur)
    ->ArgNames({"width", "height", "depth", "noise", "softness"})
    ->ArgsProduct({{600}, {120}, {8, 24}, {0, 1}, {2, 7, 22, 52, 102}})
    ->ArgsProduct({{2400}, {480}, {8, 24}, {0, 1}, {2, 7, 22, 52, 102}})
    ->Unit(benchmark::kMicrosecond);

void BM_Resample(benchmark::State& state) {
  const PackedDib source = Source(state);
  const int percent = static_cast<int>(state.range(4));
  for (auto _ : state) benchmark::DoNotOptimize(ResampleByPercent(source, percent, percent));
}
BENCHMARK(BM_Resample)
    ->ArgNames({"width", "height", "depth", "noise", "percent"})
    ->ArgsProduct({{600}, {120}, {8, 24, 32}, {0, 1}, {400}})
    ->ArgsProduct({{2400}, {480}, {8, 24, 32}, {0, 1}, {25}})
    ->Unit(benchmark::kMicrosecond);

void BM_PixelWalk(benchmark::State& state) {
  const PackedDib from = Strokes(600, 120, static_cast<int>(state.range(0)));
  const PackedDib to = BlankDib(600, 120, nullptr, static_cast<int>(state.range(0)));
  const DibView source(from), target(to);
  for (auto _ : state) {
    for (int y = 0; y < 120; ++y) {
      for (int x = 0; x < 600; ++x) target.SetPixel(x, y, source.GetPixel(x, y));
    }
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_PixelWalk)->ArgName("depth")->Arg(8)->Arg(24)->Arg(32)->Unit(benchmark::kMicrosecond);

void BM_ConcentricEllipses(benchmark::State& state) {
  for (auto _ : state) {
    DrawingSurface surface(1800, 360);
    for (int i = 0; i < 300; ++i)
      surface.FillEllipse({i * 3, i / 2, 1800 - i * 3, 360 - i / 2}, static_cast<Colour>(i) * 0x030507);
    benchmark::DoNotOptimize(surface.End());
  }
}
BENCHMARK(BM_ConcentricEllipses)->Unit(benchmark::kMicrosecond);

void BM_Wedges(benchmark::State& state) {
  for (auto _ : state) {
    DrawingSurface surface(1800, 360);
    for (int i = 0; i < 3000; ++i) {
      const int x = i * 7919 % 1800, y = i * 104729 % 360;
      const Point wedge[] = {{x, y}, {x + 60 - i % 120, y + 40}, {x + 66 - i % 120, y + 43}};
      surface.FillPolygon(wedge, static_cast<Colour>(i) * 0x0305);
    }
    benchmark::DoNotOptimize(surface.End());
  }
}
BENCHMARK(BM_Wedges)->Unit(benchmark::kMicrosecond);

void BM_Lines(benchmark::State& state) {
  for (auto _ : state) {
    DrawingSurface surface(1800, 360);
    for (int i = 0; i < 500; ++i) {
      const Point line[] = {{i * 7919 % 1800, i * 104729 % 360}, {i * 6007 % 1800, i * 31337 % 360}};
      surface.Polyline(line, static_cast<int>(state.range(0)), static_cast<Colour>(i) * 0x0305);
    }
    benchmark::DoNotOptimize(surface.End());
  }
}
BENCHMARK(BM_Lines)->ArgName("pen")->Arg(1)->Arg(12)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace glyphmotion
