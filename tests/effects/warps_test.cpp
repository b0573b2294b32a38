// SPDX-License-Identifier: MIT
// What the warps remember, and the curves of the column warps; checksums/operations.txt holds their pixels.
#include <gtest/gtest.h>

#include <cmath>

#include "effects/column_profile.h"
#include "effects/twist.h"
#include "image/filters.h"
#include "image/random_images.h"

namespace glyphmotion {
namespace {

TEST(Warps, DoubledMasksAreRememberedByWhatTheyShow) {
  Dice dice(21);
  DoubledMasks doubled;
  std::vector<PackedDib> masks;
  for (int i = 0; i < 5; ++i) masks.push_back(RandomImage(dice, 40, 12, 8));
  for (int i : {0, 1, 2, 0, 1, 2, 3, 4, 0, 0, 2, 4}) {
    const PackedDib& mask = masks[static_cast<std::size_t>(i)];
    const PackedDib* found = doubled.Double(mask);
    ASSERT_TRUE(found);
    ASSERT_EQ(Difference(*found, ResampleByPercent(mask, 200, 200)), "");
    const PackedDib copy = DuplicateDib(mask);
    EXPECT_EQ(doubled.Double(copy), found) << "made anew";
  }
}

TEST(Warps, TakeMasksAndColoursOnly) {
  TwistTables tables;
  EXPECT_FALSE(Twist(BlankDib(8, 8, nullptr, 32), 90, tables));
  EXPECT_FALSE(Twist(PackedDib(), 90, tables));
}

TEST(ColumnProfile, ABumpIsHalfASineCutOffAtTheEnds) {
  std::vector<float> profile(100, 7.0f);
  SetBumpProfile(profile, 20, 40);
  EXPECT_EQ(profile[19], 0.0f);
  EXPECT_EQ(profile[20], 0.0f) << "the sine starts at 0";
  EXPECT_NEAR(profile[30], std::sqrt(0.5f), 1e-6f);
  EXPECT_EQ(profile[40], 1.0f);
  EXPECT_GT(profile[59], 0.0f);
  EXPECT_EQ(profile[60], 0.0f);
  SetBumpProfile(profile, 90, 40);
  EXPECT_GT(profile[99], 0.6f) << "cut off in the middle";
  SetBumpProfile(profile, 100, 40);
  EXPECT_EQ(profile, std::vector<float>(100, 0.0f)) << "beyond the end";
}

TEST(ColumnProfile, TheHorizonWidensOrNarrows) {
  const struct {
    double v;
    bool alternate;
    int radius, length;
    double height;
  } rows[] = {
      {0.0, false, 8, 0, 0.0},
      {0.5, false, 8, 141, 0.5},
      {1.0, false, 8, 200, 1.0},
      {0.0, true, 8, 200, 0.0},
      {0.5, true, 8, 157, 0.5},
      {0.99, true, 32, 67, 0.99},
      {0.99, true, 1, 5, 0.99},
      {kSampleHorizon, true, 8, 110, 0.6875},
      {kSampleHorizon, false, 8, 200, 1.0},
  };
  for (const auto& row : rows) {
    std::vector<double> curve(200, 5.0);
    SetHorizonCurve(curve, row.v, row.alternate, row.radius);
    const int start = (200 - row.length) / 2;
    for (int x = 0; x < 200; ++x) {
      const int k = x - start;
      const double expected =
          k >= 0 && k < row.length ? row.height * std::sin(k * 3.141592653589793 / row.length) : 0.0;
      ASSERT_NEAR(curve[static_cast<std::size_t>(x)], expected, 1e-12) << row.v << " " << row.alternate << " " << x;
    }
  }
}

}  // namespace
}  // namespace glyphmotion
