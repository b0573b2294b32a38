// SPDX-License-Identifier: MIT
// The colour engine over the two runs of colour_runs.h.
#include <benchmark/benchmark.h>

#include "colour_runs.h"
#include "image/quantise.h"
#include "image/remap.h"
#include "image/supercompress.h"

namespace glyphmotion {
namespace {

void Describe(benchmark::State& state, const Run& run) {
  state.SetLabel(state.range(0) == kText ? "text" : "gradient");
  state.counters["colours"] = run.colours;
}

void BM_Quantise(benchmark::State& state) {
  const Run& run = RunOf(state.range(0));
  for (auto _ : state) {
    int count = 256;
    Palette palette;
    benchmark::DoNotOptimize(QuantiseFrames(run.frames, count, palette));
  }
  Describe(state, run);
}

template <PackedDib (*Map)(const PackedDib&, ColourMatcher&) noexcept>
void MapFrames(benchmark::State& state) {
  const Run& run = RunOf(state.range(0));
  for (auto _ : state) {
    ColourMatcher matcher(run.palette, 8, run.count, {.fastRemap = state.range(1) != 0});
    for (const PackedDib& image : run.images) benchmark::DoNotOptimize(Map(image, matcher));
  }
  Describe(state, run);
}
void BM_Remap(benchmark::State& state) { MapFrames<RemapImage>(state); }
void BM_Dither(benchmark::State& state) { MapFrames<DitherImage>(state); }

void BM_DitherOneBit(benchmark::State& state) {
  const Run& run = RunOf(state.range(0));
  ColourMatcher matcher(run.palette, 1, 2, {});
  for (auto _ : state) {
    for (const PackedDib& image : run.images) benchmark::DoNotOptimize(DitherImage(image, matcher));
  }
  Describe(state, run);
}

void BM_Supercompress(benchmark::State& state) {
  Run run;
  for (const PackedDib& image : RunOf(state.range(0)).images) {
    FrameRecord record;
    record.image = DuplicateDib(image).Release();
    AppendFrame(run.frames, record);
  }
  for (auto _ : state) {
    PackedDib previous;
    benchmark::DoNotOptimize(SupercompressFrames(run.frames, 0, previous, nullptr));
  }
  FreeFrames(run.frames);
}

BENCHMARK(BM_Quantise)->ArgName("text")->Arg(kGradient)->Arg(kText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Remap)
    ->ArgNames({"text", "fast"})
    ->ArgsProduct({{kGradient, kText}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Dither)
    ->ArgNames({"text", "fast"})
    ->ArgsProduct({{kGradient, kText}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DitherOneBit)->ArgName("text")->Arg(kGradient)->Arg(kText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Supercompress)->ArgName("text")->Arg(kGradient)->Arg(kText)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace glyphmotion
