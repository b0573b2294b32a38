// SPDX-License-Identifier: MIT
// One frame and the whole job at the default options, and a GIF of each effect: 64 frames of "This space for rent...",
// 56 px bold, blurred shadow, outline.
#include <benchmark/benchmark.h>
#include <glyphmotion/render.h>

#include <string>
#include <vector>

namespace {

glyphmotion::Job DefaultJob(bool customPalette) {
  glyphmotion::Job job;
  job.text = "This space for rent...";
  job.effect = "simple";
  job.defaults = {{"Truecolour", "0"}, {"14", customPalette ? "1" : "0"}};
  return job;
}

void RunJob(benchmark::State& state, const glyphmotion::Job& job) {
  glyphmotion::Sink sink;
  std::size_t bytes = 0;
  sink.image = [&](const glyphmotion::Image& image) {
    bytes += image.dib.size();
    return true;
  };
  for (auto _ : state) {
    const glyphmotion::RenderResult result = glyphmotion::Render(job, sink);
    if (result.status != glyphmotion::RenderStatus::Done) state.SkipWithError(result.message.c_str());
  }
  benchmark::DoNotOptimize(bytes);
}

void SampleFrame(benchmark::State& state) {
  glyphmotion::Job job = DefaultJob(false);
  job.action = glyphmotion::Job::Action::Sample;
  RunJob(state, job);
}
BENCHMARK(SampleFrame)->Unit(benchmark::kMillisecond);

void FramesInTrueColour(benchmark::State& state) {
  glyphmotion::Job job = DefaultJob(false);
  job.paletteFormat = false;
  job.defaults = {{"Truecolour", "1"}};
  RunJob(state, job);
}
BENCHMARK(FramesInTrueColour)->Unit(benchmark::kMillisecond);

void FramesInAFixedPalette(benchmark::State& state) { RunJob(state, DefaultJob(false)); }
BENCHMARK(FramesInAFixedPalette)->Unit(benchmark::kMillisecond);

void FramesInTheirOwnPalette(benchmark::State& state) { RunJob(state, DefaultJob(true)); }
BENCHMARK(FramesInTheirOwnPalette)->Unit(benchmark::kMillisecond);

void FramesInTheirOwnPaletteDithered(benchmark::State& state) {
  glyphmotion::Job job = DefaultJob(true);
  job.defaults.emplace_back("MainDither", "1");
  RunJob(state, job);
}
BENCHMARK(FramesInTheirOwnPaletteDithered)->Unit(benchmark::kMillisecond);

// What bench/web_speed.mjs compares with WebAssembly: one thread, the fonts of both.
void WholeGif(benchmark::State& state, const std::string& effect) {
  glyphmotion::Job job;
  job.text = "This space for rent...";
  job.effect = effect;
  job.threads = 1;
  for (auto _ : state) {
    const glyphmotion::RenderedBytes gif = glyphmotion::RenderToMemory(job, "gif");
    if (gif.result.status != glyphmotion::RenderStatus::Done) state.SkipWithError(gif.result.message.c_str());
    state.counters["bytes"] = static_cast<double>(gif.bytes.size());
  }
}
const bool registered = [] {
  for (const std::string& effect : glyphmotion::EffectNames())
    benchmark::RegisterBenchmark(("WholeGif/" + effect).c_str(), WholeGif, effect)->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
