// SPDX-License-Identifier: MIT
// The column warps against their plain reading: whole pictures, one pixel at a time.
#include "effects/column_warp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "effects/column_profile.h"
#include "image/filters.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

using Values = std::vector<int>;

void PlainLower(const DibView& from, const DibView& to, const Values& drop) {
  for (int x = 0; x < from.Width(); ++x) {
    for (int y = 0; y < from.Height(); ++y) {
      to.SetPixel(x, y + drop[static_cast<std::size_t>(x)], from.GetPixel(x, y));
    }
  }
}

void PlainSqueeze(const DibView& from, const DibView& to, const Values& percent) {
  const int height = from.Height();
  for (int x = 0; x < from.Width(); ++x) {
    const int q = percent[static_cast<std::size_t>(x)];
    if (q < 1) continue;
    const int n = height * q / 100;
    int previous = 0;
    for (int i = 1; i <= n; ++i) {
      const int end = 100 * i / q;
      std::uint32_t value = 0;
      for (int shift = 0; shift < from.Bits(); shift += 8) {
        std::uint32_t sum = 0, count = 0;
        for (int y = previous; y < end && y < height; ++y, ++count) sum += from.GetPixel(x, y) >> shift & 0xFF;
        value |= sum / std::max(count, 1u) << shift;
      }
      to.SetPixel(x, (height - n) / 2 + i - 1, value);
      previous = end;
    }
  }
}

using Plain = void (*)(const DibView&, const DibView&, const Values&);
using Fast = void (*)(const DibView&, const DibView&, int, std::span<const int>) noexcept;
struct Pair {
  Plain plain;
  Fast fast;
  int most;     // the largest value
  int resting;  // that of columns that do not move
};
constexpr Pair kPairs[] = {{PlainLower, LowerColumns, 60, 48}, {PlainSqueeze, SqueezeColumns, 100, 0}};

// Runs of equal values and values of their own.
Values RandomValues(Dice& dice, int columns, int most) {
  Values values;
  for (int left = 0, value = 0; static_cast<int>(values.size()) < columns; --left) {
    if (left <= 0) {
      value = Roll(dice, 0, most);
      left = Roll(dice, 1, 90);
    }
    values.push_back(Roll(dice, 0, 3) ? value : Roll(dice, 0, most));
  }
  return values;
}

TEST(ColumnWarp, FastColumnsAreThePlainOnes) {
  Dice dice(1);
  for (int round = 0; round < 120; ++round) {
    const Pair& pair = kPairs[round % 2];
    const int bits = (round / 2 % 3 == 0) ? 8 : round / 2 % 3 == 1 ? 24 : 32;
    const int width = Roll(dice, 1, 300), height = Roll(dice, 1, 130), left = Roll(dice, 0, width - 1);
    const PackedDib source = RandomImage(dice, width, height, bits);
    const Values values = RandomValues(dice, width, pair.most);
    const DibView from(source);
    const PackedDib whole = BlankLike(from, width, height), part = BlankLike(from, width - left, height);
    pair.plain(from, DibView(whole), values);
    pair.fast(from, DibView(part), left, values);
    ASSERT_EQ(Difference(part, CropDib(whole, {left, 0, width, height})), "") << round;
  }
}

TEST(ColumnWarp, ALayerIsTheWholePictureEnlargedWarpedAndReduced) {
  Dice dice(2);
  for (int round = 0; round < 24; ++round) {
    const Pair& pair = kPairs[round % 2];
    const int width = Roll(dice, 1, 90), height = Roll(dice, 1, 40), columns = width * kWarpScale;
    PackedDib source = RandomImage(dice, width, height, round % 3 ? 8 : 24);
    WarpedLayer layer;
    for (int frame = 0; frame < 8; ++frame) {
      if (frame == 5) source = RandomImage(dice, width, height, round % 3 ? 8 : 24);
      const int begin = Roll(dice, 0, columns), end = std::min(columns, begin + Roll(dice, 0, columns));
      Values values = RandomValues(dice, columns, pair.most);
      for (int x = 0; x < columns; ++x) {
        if (x < begin || x >= end) values[static_cast<std::size_t>(x)] = pair.resting;
      }
      const PackedDib large = ResampleByPercent(source, 400, 400);
      const PackedDib warped = BlankLike(DibView(large), columns, height * kWarpScale);
      pair.plain(DibView(large), DibView(warped), values);
      const PackedDib got =
          layer.Warp(DuplicateDib(source), {begin, end},
                     [&](const DibView& from, const DibView& to, int left) { pair.fast(from, to, left, values); });
      ASSERT_EQ(Difference(got, ResampleByPercent(warped, 25, 25)), "") << round << " " << frame;
    }
  }
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
}  // namespace glyphmotion::test
