// SPDX-License-Identifier: MIT
#include "image/remap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "random_images.h"

namespace glyphmotion {
namespace {

TEST(Remap, TiesAndDuplicatesGoToTheLowestIndex) {
  Palette palette{};
  palette[3] = palette[7] = {100, 100, 100};
  palette[5] = {102, 100, 100};
  EXPECT_EQ(NearestColour(100, 100, 100, palette, 256), 3);
  EXPECT_EQ(NearestColour(101, 100, 100, palette, 256), 3) << "equally near to 5 and 7";
  EXPECT_EQ(NearestColour(0, 0, 0, palette, 256), 0) << "unset entries match too";
  EXPECT_EQ(NearestColour(102, 100, 100, palette, 5), 3);
  EXPECT_EQ(NearestColour(102, 100, 100, palette, 0), 0);
  EXPECT_EQ(NearestColour(102, 100, 100, palette, -1), 0);
}

TEST(Remap, EqualBrightnessKeepsItsOrder) {
  Dice dice(3);
  for (int round = 0; round < 20; ++round) {
    Palette palette = RandomPalette(dice, round % 2 ? 3 : 256), sorted = palette;
    const int count = round ? Roll(dice, 0, 256) : 256;
    std::stable_sort(sorted.begin(), sorted.begin() + count,
                     [](Rgb a, Rgb b) { return Brightness(a) < Brightness(b); });
    SortPaletteByBrightness(palette, count);
    EXPECT_EQ(palette, sorted);
  }
}

}  // namespace
}  // namespace glyphmotion
