// SPDX-License-Identifier: MIT
// Shaping and measuring. A run shapes a text once and then finds it again in every frame.
#include <benchmark/benchmark.h>

#include "text/text_raster.h"

namespace glyphmotion {
namespace {

const FontRequest kFont{"DejaVu Sans", 40};

std::u32string Words(char32_t first, int letters) {
  std::u32string text;
  for (int i = 0; i < letters; ++i) text += i % 6 == 5 ? U' ' : first + static_cast<char32_t>(i * 7 % 20);
  return text;
}

// A text that has not been met before.
void BM_ShapeArabicLetters(benchmark::State& state) {
  StartTextEngine();
  std::u32string text = Words(0x62A, static_cast<int>(state.range(0)));
  char32_t next = 0;
  for (auto _ : state) {
    text[0] = 0x62A + next++ % 16;
    text[1] = 0x62A + next / 16 % 16;
    benchmark::DoNotOptimize(ShapeText(kFont, text).codes.data());
  }
  StopTextEngine();
}
BENCHMARK(BM_ShapeArabicLetters)->Arg(10)->Arg(260)->Unit(benchmark::kMicrosecond);

// What every frame does: once more the same text.
void BM_MeasureAgain(benchmark::State& state) {
  StartTextEngine();
  const std::u32string text = Words(state.range(0) ? 0x62A : U'a', 20);
  GlyphCache cache;
  for (auto _ : state) {
    TextLine line{kFont, true, ShapeText(kFont, text).codes + U' '};
    benchmark::DoNotOptimize(MeasureText(line, true, cache).width);
  }
  StopTextEngine();
}
BENCHMARK(BM_MeasureAgain)->ArgName("arabic")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace glyphmotion
