// SPDX-License-Identifier: MIT
// The GIF writer on 64 frames of 600x120, of the two kinds that matter: text that moves over a plain background, and
// gradients that change everywhere.
#include <benchmark/benchmark.h>

#include <vector>

#include "host/encoders/gif_writer.h"

namespace {

constexpr int kWidth = 600, kHeight = 120, kFrames = 64;

std::vector<std::vector<std::uint8_t>> Frames(bool gradient) {
  std::vector<std::vector<std::uint8_t>> frames(kFrames, std::vector<std::uint8_t>(kWidth * kHeight));
  for (int f = 0; f < kFrames; ++f)
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const int dx = (x + 9 * f) % 60 - 30, dy = y - kHeight / 2, distance = dx * dx + dy * dy;
        const int ring = distance > 300 && distance < 900 ? distance / 20 : 0;
        const int value = gradient ? (x * 3 + f * 5 + y * y / 40) / 4 % 251 : x < f * 9 ? ring : 0;
        frames[static_cast<std::size_t>(f)][static_cast<std::size_t>(y * kWidth + x)] =
            static_cast<std::uint8_t>(value);
      }
  return frames;
}

void WriteGif(benchmark::State& state) {
  const auto frames = Frames(state.range(0) != 0);
  std::array<std::uint8_t, 768> palette;
  for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = static_cast<std::uint8_t>(i / 3 + i % 3);
  std::size_t bytes = 0;
  for (auto _ : state) {
    glyphmotion::GifWriter writer(kWidth, kHeight);
    for (const auto& frame : frames) writer.Add({kWidth, kHeight, frame, palette, 4, -1, false});
    const auto file = writer.Finish();
    bytes = file.size();
    benchmark::DoNotOptimize(file.data());
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(WriteGif)->ArgName("gradient")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
