// SPDX-License-Identifier: MIT
// The whole run of each effect at its default options, one row an effect: the frames themselves, in true colour, so
// that no palette has a part in it.
#include <benchmark/benchmark.h>
#include <glyphmotion/render.h>

#include <string>

#include "effects/effect_table.h"

namespace {

void WholeRun(benchmark::State& state) {
  glyphmotion::Job job;
  job.text = "This space for rent...";
  job.effect = glyphmotion::EffectRow(static_cast<int>(state.range(0))).name;
  job.paletteFormat = false;
  job.defaults = {{"Truecolour", "1"}};
  glyphmotion::Sink sink;
  int frames = 0;
  sink.image = [&](const glyphmotion::Image&) {
    ++frames;
    return true;
  };
  for (auto _ : state) {
    frames = 0;
    const glyphmotion::RenderResult result = glyphmotion::Render(job, sink);
    if (result.status != glyphmotion::RenderStatus::Done) state.SkipWithError(result.message.c_str());
  }
  state.SetLabel(*job.effect + ", " + std::to_string(frames) + " frames");
}
BENCHMARK(WholeRun)->ArgName("effect")->DenseRange(0, glyphmotion::kEffectCount - 1)->Unit(benchmark::kMillisecond);

}  // namespace
