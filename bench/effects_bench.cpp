// SPDX-License-Identifier: MIT
// What the effects do to a mask of 1200 x 240, with tables that a run has made already where a run would have them.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

#include "effects/bulge.h"
#include "effects/scatter.h"
#include "effects/twist.h"

namespace glyphmotion {
namespace {

constexpr int kWidth = 1200, kHeight = 240;

// Antialiased strokes on an empty background, like text.
PackedDib StrokeMask() {
  PackedDib dib = BlankMask(kWidth, kHeight);
  const DibView view(dib);
  for (int y = kHeight / 8; y < kHeight * 7 / 8; ++y) {
    for (int x = kWidth / 20; x < kWidth * 19 / 20; ++x) {
      const double wave = std::sin(x / 12.0 + 2.0 * std::sin(y / 30.0)) * 4.0 - 1.5;
      view.SetPixel(x, y, static_cast<std::uint32_t>(std::clamp(wave, 0.0, 1.0) * 255.0));
    }
  }
  return dib;
}

// Each turn has another angle, as the frames of a run have.
void BM_TwistMask(benchmark::State& state) {
  const PackedDib mask = StrokeMask();
  TwistTables tables;
  DoubledMasks doubled;
  int angle = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(TwistMask(mask, angle = (angle + 7) % 360, state.range(0) != 0, tables, &doubled));
}
BENCHMARK(BM_TwistMask)->ArgName("smooth")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// With cold caches: the first twist of a run, or one of a size that does not recur.
void BM_TwistAlone(benchmark::State& state) {
  const PackedDib mask = StrokeMask();
  for (auto _ : state) {
    TwistTables tables;
    benchmark::DoNotOptimize(Twist(mask, 360, tables));
  }
}
BENCHMARK(BM_TwistAlone)->Unit(benchmark::kMicrosecond);

void BM_Bulge(benchmark::State& state) {
  const PackedDib mask = StrokeMask();
  BulgeTables tables;
  int percent = 0;
  for (auto _ : state) benchmark::DoNotOptimize(BulgeBitmap(mask, -(percent = percent % 100 + 1), tables));
}
BENCHMARK(BM_Bulge)->Unit(benchmark::kMicrosecond);

void BM_Scatter(benchmark::State& state) {
  const PackedDib mask = StrokeMask();
  ScatterTables tables;
  for (auto _ : state) benchmark::DoNotOptimize(Scatter(mask, 32, 12385, tables));
}
BENCHMARK(BM_Scatter)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace glyphmotion
