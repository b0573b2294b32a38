// SPDX-License-Identifier: MIT
#include "text/soft_shadow.h"

#include <gtest/gtest.h>

#include <cstring>

#include "image/filters.h"

namespace glyphmotion {
namespace {

bool SameBytes(const PackedDib& a, const PackedDib& b) {
  const LockedBlock<char> x(a.Handle()), y(b.Handle());
  return x && y && BlockSize(a.Handle()) == BlockSize(b.Handle()) &&
         !std::memcmp(x.get(), y.get(), BlockSize(a.Handle()));
}

TEST(SoftShadow, IsTheBlurredMaskWhereverTheTextStands) {
  ASSERT_TRUE(StartTextEngine());
  TextLine line;
  line.font = {"Liberation Sans", 24, true, false};
  line.text = U"Shadow j ";
  GlyphCache glyphs;
  SoftShadowCache cache;
  for (int space : {100, 50}) {
    line.characterSpace = space;
    const TextMeasure measure = MeasureText(line, true, glyphs);
    const struct {
      int width, height;
    } frames[] = {{measure.width + 20, 44}, {measure.width + 4, 30}, {90, 60}, {60, 50}};
    for (const auto& frame : frames) {
      for (int y : {3, -7, 3}) {
        for (int x = -measure.width - 40; x < frame.width + 40; x += 13) {
          const PackedDib plain = Blur(RasteriseText(line, measure, x, y, frame.width, frame.height, 200, glyphs), 22);
          const PackedDib soft = cache.Render(line, measure, x, y, frame.width, frame.height, 200, 22, glyphs);
          ASSERT_TRUE(SameBytes(plain, soft))
              << space << ": " << x << "," << y << " in " << frame.width << "x" << frame.height;
        }
      }
    }
  }
  StopTextEngine();
}

}  // namespace
}  // namespace glyphmotion
