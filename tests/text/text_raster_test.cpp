// SPDX-License-Identifier: MIT
#include "text/text_raster.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace glyphmotion {
namespace {

TextLine Line(std::u32string text, int size = 40, bool antialias = true, int space = 100) {
  return {{"Arial", size, true, false}, antialias, std::move(text), space};
}

std::vector<int> Pixels(const PackedDib& mask) {
  std::vector<int> values;
  const DibView view(mask);
  for (int y = 0; view && y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) values.push_back(static_cast<int>(view.GetPixel(x, y)));
  }
  return values;
}

TEST(Text, AccentsTakeTheirBaseLettersWidthButKeepTheirShape) {
  GlyphCache cache;
  const auto width = [&](char32_t c, bool compensate) {
    return MeasureText(Line(std::u32string(1, c), 97), compensate, cache).width;
  };
  const std::u32string accented =
      U"\u00C0\u00C7\u00C9\u00CF\u00D1\u00D8\u00DC\u00DD\u00DF\u00E5\u00F0\u00F1\u00F8\u00FF";
  const std::u32string bases = U"ACEINOUYBaonoy";
  int differs = 0;
  for (std::size_t i = 0; i < accented.size(); ++i) {
    EXPECT_EQ(width(accented[i], true), width(bases[i], true)) << i;
    differs += width(accented[i], false) != width(bases[i], true);
  }
  EXPECT_GT(differs, 0) << "without compensation the sharp s and the stroked o have their own widths";
  const std::u32string unpaired = U"\u00C6\u00D0\u00D7\u00DE\u00E6\u00F7\u00FE";
  for (const char32_t c : unpaired) EXPECT_EQ(width(c, true), width(c, false));
  const TextLine line = Line(U"\u00E9", 60), plain = Line(U"e", 60);
  const TextMeasure measure = MeasureText(line, true, cache);
  EXPECT_NE(Pixels(RasteriseText(line, measure, 0, 0, 60, 60, 255, cache)),
            Pixels(RasteriseText(plain, measure, 0, 0, 60, 60, 255, cache)));
}

TEST(Text, FullCacheForgetsAndDrawsTheSame) {
  const BlockCounters before = LiveBlocks();
  {
    GlyphCache cache;
    const TextLine line = Line(U"same ", 31);
    const TextMeasure measure = MeasureText(line, true, cache);
    const auto first = Pixels(RasteriseText(line, measure, 0, 0, 99, 31, 255, cache));
    for (int size = 4; size < 60; ++size) {
      const TextLine other = Line(U"same ", size);
      GlyphCache fresh;
      const TextMeasure m = MeasureText(other, true, cache);
      EXPECT_EQ(Pixels(RasteriseText(other, m, 0, 0, 50, 50, 255, cache)),
                Pixels(RasteriseText(other, m, 0, 0, 50, 50, 255, fresh)));
    }
    EXPECT_LT(LiveBlocks().blocks - before.blocks, 100u);
    EXPECT_EQ(Pixels(RasteriseText(line, measure, 0, 0, 99, 31, 255, cache)), first);
  }
  EXPECT_EQ(LiveBlocks().blocks, before.blocks);
}

TEST(Text, EveryAllocationMayFailAndNothingLeaks) {
  const TextLine line = Line(U"leak ");
  const BlockCounters before = LiveBlocks();
  for (const int level : {255, 128}) {
    std::uint64_t asked = 1;
    for (std::uint64_t n = 0; n <= asked; ++n) {
      GlyphCache cache;
      const TextMeasure measure = MeasureText(line, true, cache);
      FailAllocation(n);
      const PackedDib mask = RasteriseText(line, measure, 0, 0, 80, 40, level, cache);
      const PackedDib ring = OutlineMask(line, measure, 0, 0, 80, 40, level, cache);
      if (n == 0) asked = AllocationsAsked();
      FailAllocation(0);
      EXPECT_EQ(n == 0, mask && ring) << n;
      // What failed once is drawn once there is memory again.
      EXPECT_TRUE(RasteriseText(line, measure, 0, 0, 80, 40, level, cache));
    }
    EXPECT_GT(asked, 7u);
  }
  EXPECT_EQ(LiveBlocks().blocks, before.blocks);
  EXPECT_EQ(LiveBlocks().locks, before.locks);
  GlyphCache cache;
  const TextMeasure measure = MeasureText(line, true, cache);
  EXPECT_FALSE(RasteriseText(line, measure, 0, 0, 0, 40, 255, cache));
  EXPECT_FALSE(OutlineMask(line, measure, 0, 0, 1 << 20, 1 << 20, 255, cache));
}

}  // namespace
}  // namespace glyphmotion
