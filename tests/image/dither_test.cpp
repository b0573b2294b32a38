// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "image/remap.h"
#include "random_images.h"

namespace glyphmotion {
namespace {

// A colour between two entries becomes them in its proportion, the same in every frame; entries stay as they are.
TEST(Dither, OrderedMixesTwoEntriesInAFixedPattern) {
  Palette palette{};
  palette[1] = {200, 100, 40};
  palette[2] = {0, 255, 255};
  for (const int part : {0, 3, 8, 16, 29, 32, 50, 61, 64}) {
    const auto level = [&](int full) { return full * part / 64; };
    const Colour colour = MakeColour(level(200), level(100), level(40));
    ColourMatcher matcher(palette, 8, 3, {});
    const PackedDib image = SolidDib(24, 16, colour), dithered = DitherOrdered(image, matcher);
    int ones = 0;
    for (int i = 0; i < 24 * 16; ++i) {
      const std::uint32_t index = DibView(dithered).GetPixel(i % 24, i / 24);
      ASSERT_LT(index, 2u);
      ones += index == 1;
      EXPECT_EQ(index, DibView(dithered).GetPixel(i % 24 % 8, i / 24 % 8));
    }
    EXPECT_NEAR(ones, part * 6, 9) << part;
  }
  Dice dice(5);
  ColourMatcher matcher(palette, 1, 2, {});
  const PackedDib image = RandomImage(dice, 9, 9, 24);
  EXPECT_EQ(Difference(DitherOrdered(image, matcher), DitherImage(image, matcher)), "") << "one bit";
}

}  // namespace
}  // namespace glyphmotion
