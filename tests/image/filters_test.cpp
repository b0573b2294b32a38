// SPDX-License-Identifier: MIT
#include "image/filters.h"

#include <gtest/gtest.h>

#include "image/resample_filters.h"
#include "random_images.h"

namespace glyphmotion {
namespace {

TEST(Blur, LinesShorterThanTheKernelStayAsTheyAre) {
  const struct {
    int width, height;
    bool across, down;
  } rows[] = {{40, 40, false, false}, {41, 40, true, false}, {40, 41, false, true}, {41, 41, true, true}};
  for (const auto& row : rows) {
    const PackedDib dib = BlankMask(row.width, row.height);
    DibView(dib).SetPixel(20, 20, 255);
    const PackedDib soft = Blur(dib, 30);
    const DibView view(soft);
    EXPECT_EQ(view.GetPixel(21, 20) != 0, row.across) << row.width;
    EXPECT_EQ(view.GetPixel(20, 21) != 0, row.down) << row.height;
  }
}

// The marks of the two filters around one white pixel: Mitchell spreads it over its neighbours even where the scale is
// 1, Lanczos with all its zeros on whole numbers does not.
TEST(Resample, TheProductOfTheScalesChoosesTheFilter) {
  const struct {
    int width, height;
    bool mitchell;
  } rows[] = {{9, 36, true}, {9, 18, true}, {9, 3, false}, {9, 8, false}};
  for (const auto& row : rows) {
    const PackedDib dib = BlankMask(9, 9);
    for (int y = 0; y < 9; ++y) DibView(dib).SetPixel(4, y, 255);
    const PackedDib scaled = ResampleToSize(dib, row.width, row.height);
    const DibView view(scaled);
    EXPECT_EQ(view.GetPixel(3, row.height / 2), row.mitchell ? 14u : 0u) << "255 / 18 or nothing";
    EXPECT_EQ(view.GetPixel(4, row.height / 2), row.mitchell ? 227u : 255u) << "255 * 8 / 9 or all";
  }
}

TEST(Resample, SizesAndDepths) {
  Dice dice(1);
  const PackedDib colour = RandomImage(dice, 11, 7, 24);
  EXPECT_EQ(Difference(ResampleByPercent(colour, 100, 100), colour), "");
  const struct {
    int x, y, width, height;
  } rows[] = {{400, 400, 44, 28}, {25, 25, 3, 2}, {50, 150, 6, 11}, {4, 100, 0, 0}, {-100, 100, 0, 0}};
  for (const auto& row : rows) {
    const PackedDib scaled = ResampleByPercent(colour, row.x, row.y);
    const DibView view(scaled);
    EXPECT_EQ(view.Width(), row.width) << row.x;
    EXPECT_EQ(view.Height(), row.height) << row.y;
  }
  EXPECT_FALSE(ResampleToSize(colour, 0, 5));
  EXPECT_FALSE(ResampleToSize(colour, 1 << 20, 1 << 20));
  EXPECT_FALSE(ResampleToSize(PackedDib(), 5, 5));
  EXPECT_FALSE(Blur(PackedDib(), 5));
  for (int depth : {1, 4}) {
    const PackedDib small = ResampleToSize(RandomImage(dice, 8, 8, depth), 16, 16);
    EXPECT_EQ(DibView(small).Bits(), depth);
    for (int i = 0; i < 256; ++i) EXPECT_EQ(DibView(small).GetPixel(i % 16, i / 16), 0u);
  }
  EXPECT_EQ(DibView(ResampleToSize(BlankDib(8, 8, &GreyRamp(), 8), 5, 5)).TableEntry(99), (Rgb{99, 99, 99}));
}

TEST(ResampleFilters, KernelsAreEvenAndEndAtTheirSupport) {
  for (int i = 2; i < 16; ++i) {
    const ResampleFilter& filter = kResampleFilters[i];
    EXPECT_GT(filter.kernel(0), 0.5) << i;
    for (double x = 0; x < 5; x += 0.01) {
      EXPECT_NEAR(filter.kernel(x), filter.kernel(-x), 1e-12) << i << " at " << x;
      if (x > filter.support + 1e-9) {
        EXPECT_EQ(filter.kernel(x), 0) << i << " at " << x;
      }
    }
  }
  const struct {
    int row;
    double x, value;
  } known[] = {{12, 0, 8.0 / 9}, {12, 1, 1.0 / 18}, {12, 1.5, -5.0 / 144}, {13, 0, 1},    {13, 1, 0},
               {13, 2, 0},       {10, 0, 2.0 / 3},  {11, 0.5, 0.5625},     {9, 0.5, 0.5}, {4, 0.5, 0.5}};
  for (const auto& row : known) EXPECT_NEAR(kResampleFilters[row.row].kernel(row.x), row.value, 1e-12) << row.row;
}

}  // namespace
}  // namespace glyphmotion
