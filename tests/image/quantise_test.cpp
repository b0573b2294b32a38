// SPDX-License-Identifier: MIT
#include "image/quantise.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "random_images.h"

namespace glyphmotion {
namespace {

TEST(Quantise, FewEnoughColoursAreKeptInTheOrderOfTheirAppearanceFromTheTop) {
  TestFrames frames;
  const PackedDib image = BlankDib(3, 2, nullptr, 24);
  const Colour colours[] = {7, 8, 7, 0xFF0000, 9, 9};
  for (int i = 0; i < 6; ++i) DibView(image).SetPixel(i % 3, i / 3, colours[i]);
  frames.Append(DuplicateDib(image));
  frames.Append(SolidDib(5, 5, 0x123456));
  int count = 5;
  Palette palette;
  ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
  ASSERT_EQ(count, 5);
  const Colour expected[] = {7, 8, 0xFF0000, 9, 0x123456, 0};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(palette[i], RgbOf(expected[i]));
  count = 4;
  ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
  EXPECT_LE(count, 4);
}

// The 256th colour on the last pixel still fits; one more pixel, of whatever colour, does not.
TEST(Quantise, AFullListCountsEveryPixel) {
  for (int width : {256, 257}) {
    TestFrames frames;
    const PackedDib image = BlankDib(width, 1, nullptr, 24);
    for (int x = 0; x < width; ++x) DibView(image).SetPixel(x, 0, MakeColour(std::min(x, 255), 3, 3));
    frames.Append(DuplicateDib(image));
    int count = 256;
    Palette palette;
    ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
    EXPECT_EQ(count == 256, width == 256);
  }
}

}  // namespace
}  // namespace glyphmotion
