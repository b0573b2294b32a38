// SPDX-License-Identifier: MIT
// The twist, the bulge and the scatter against plain readings of themselves, byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/bulge.h"
#include "effects/scatter.h"
#include "effects/twist.h"
#include "image/filters.h"
#include "image/random_images.h"
#include "platform/random.h"

namespace glyphmotion {
namespace {

std::uint32_t PlainSample(const DibView& bitmap, double x, double y) {
  const double X = x + 0.5, Y = y + 0.5;
  const int width = bitmap.Width(), height = bitmap.Height();
  if (X < -1 || X >= width || Y < -1 || Y >= height) return 0;
  const int x0 = static_cast<int>(X), y0 = static_cast<int>(Y);
  const int x1 = static_cast<int>(X + 1), y1 = static_cast<int>(Y + 1);
  const std::uint32_t p00 = X >= 0 && Y >= 0 ? bitmap.GetPixel(x0, y0) : 0;
  const std::uint32_t p10 = width > X + 1 && Y >= 0 ? bitmap.GetPixel(x1, y0) : 0;
  const std::uint32_t p01 = X >= 0 && height > Y + 1 ? bitmap.GetPixel(x0, y1) : 0;
  const std::uint32_t p11 = width > X + 1 && height > Y + 1 ? bitmap.GetPixel(x1, y1) : 0;
  const double fx = X - std::floor(X), fy = Y - std::floor(Y);
  std::uint32_t result = 0;
  for (int shift = 0; shift < (bitmap.Bits() > 8 ? 24 : 8); shift += 8) {
    const auto c = [shift](std::uint32_t p) { return static_cast<double>((p >> shift) & 0xFF); };
    const double value = (c(p00) * (1 - fx) + c(p10) * fx) * (1 - fy) + (c(p01) * (1 - fx) + c(p11) * fx) * fy;
    result |= static_cast<std::uint32_t>(value) << shift;
  }
  return result;
}

// Maps the scaled distances of a place inside the disc in place; both warps differ in this alone.
template <typename Map>
PackedDib PlainWarp(const PackedDib& source, Map map) {
  PackedDib result = DuplicateDib(source);
  const DibView from(source), to(result);
  const int width = from.Width(), height = from.Height();
  const double cx = width * 0.5, cy = height * 0.5, R = std::max(cx, cy);
  const double kx = width < height ? static_cast<double>(height) / width : 1;
  const double ky = width > height ? static_cast<double>(width) / height : 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      double dy = (y - cy) * ky, dx = (x - cx) * kx;
      if (dx * dx + dy * dy >= R * R) continue;
      map(dx, dy, R);
      to.SetPixel(x, y, PlainSample(from, dx / kx + cx, dy / ky + cy));
    }
  }
  return result;
}

PackedDib PlainTwist(const PackedDib& source, int degrees, bool smooth) {
  const PackedDib working = smooth ? ResampleByPercent(source, 200, 200) : DuplicateDib(source);
  PackedDib result = PlainWarp(working, [degrees](double& dx, double& dy, double R) {
    const double a = degrees * 3.141592653589793 / 180;
    const double r = std::sqrt(dx * dx + dy * dy), t = 1 - r / R, theta = t * a * t;
    const double c = std::cos(theta), s = std::sin(theta), x = dx, y = dy;
    dx = c * x - s * y;
    dy = s * x + c * y;
  });
  return smooth ? ResampleByPercent(result, 50, 50) : std::move(result);
}

PackedDib PlainBulge(const PackedDib& source, int k) {
  if (k == 0) return DuplicateDib(source);
  return PlainWarp(source, [k](double& dx, double& dy, double R) {
    const double a = k / 100.0, d2 = dx * dx + dy * dy;
    const double f = d2 > 0 ? std::pow(std::sin((std::sqrt(d2) * 1.5707963267948966) / R), -a) : 1;
    dx *= f;
    dy *= f;
  });
}

PackedDib PlainScatter(const PackedDib& source, int R, std::uint32_t seed) {
  if (R < 1) return DuplicateDib(source);
  SeedRandom(seed);
  const DibView from(source);
  PackedDib result = BlankLike(from, from.Width(), from.Height());
  {
    const DibView to(result);
    for (int y = 0; y < from.Height(); ++y) {
      for (int x = 0; x < from.Width(); ++x) {
        const int dx = NextRandom() % R - R / 2, dy = NextRandom() % R - R / 2;
        const bool inside = x + dx >= 0 && x + dx < from.Width() && y + dy >= 0 && y + dy < from.Height();
        to.SetPixel(x, y, inside ? from.GetPixel(x + dx, y + dy) : from.GetPixel(x, y));
      }
    }
  }
  return Blur(result, R + 2);
}

// Half of the pictures are mostly zero or one flat value, as masks are; flat ones show the rounding of the weights.
PackedDib Picture(Dice& dice, int width, int height, int bits) {
  PackedDib dib = RandomImage(dice, width, height, bits, Roll(dice, 0, 1) ? 256 : 2, Roll(dice, 1, 9));
  const int kind = Roll(dice, 0, 3);
  const DibView view(dib);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (kind == 0 && Roll(dice, 0, 3)) view.SetPixel(x, y, 0);
      if (kind == 1) view.SetPixel(x, y, bits == 8 ? 255 : 0xBD7E40);
    }
  }
  return dib;
}

struct Size {
  int width, height;
};
constexpr Size kSizes[] = {{1, 1},   {1, 2},    {2, 1},  {2, 2},  {3, 3},   {1, 9},    {9, 1},    {4, 7},
                           {7, 4},   {8, 8},    {9, 9},  {5, 40}, {40, 5},  {41, 17},  {17, 42},  {64, 64},
                           {65, 64}, {150, 31}, {31, 7}, {3, 64}, {99, 98}, {333, 40}, {200, 41}, {47, 131}};

TEST(Warps, TwistIsThePlainTwistByteForByte) {
  Dice dice(20);
  TwistTables tables;
  DoubledMasks doubled;
  for (const Size size : kSizes) {
    for (const int bits : {8, 24}) {
      for (const int angle : {0, 1, -90, 360, -720, 1440, Roll(dice, -1440, 1440)}) {
        const PackedDib source = Picture(dice, size.width, size.height, bits);
        ASSERT_EQ(Difference(TwistMask(source, angle, false, tables), PlainTwist(source, angle, false)), "")
            << size.width << "x" << size.height << " " << bits << " bits, " << angle;
        ASSERT_EQ(Difference(TwistMask(source, angle, true, tables, Roll(dice, 0, 1) ? &doubled : nullptr),
                             PlainTwist(source, angle, true)),
                  "")
            << size.width << "x" << size.height << " smooth";
      }
    }
  }
  const PackedDib deep = BlankDib(8, 8, nullptr, 32);
  EXPECT_FALSE(Twist(deep, 90, tables));
  EXPECT_FALSE(Twist(PackedDib(), 90, tables));
}

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

TEST(Warps, BulgeIsThePlainBulgeByteForByte) {
  Dice dice(22);
  BulgeTables tables;
  for (const Size size : kSizes) {
    for (const int bits : {8, 24}) {
      for (const int percent : {0, -1, -50, -100, Roll(dice, -100, -1)}) {
        const PackedDib source = Picture(dice, size.width, size.height, bits);
        ASSERT_EQ(Difference(BulgeBitmap(source, percent, tables), PlainBulge(source, percent)), "")
            << size.width << "x" << size.height << " " << bits << " bits, " << percent;
      }
    }
  }
}

TEST(Warps, ScatterIsThePlainScatterAndLeavesTheGeneratorWhereItDoes) {
  Dice dice(23);
  ScatterTables tables;
  for (const Size size : kSizes) {
    for (const int bits : {8, 24}) {
      for (const int radius : {0, 1, 2, 8, 33, 72}) {
        const PackedDib source = Picture(dice, size.width, size.height, bits);
        const auto seed = static_cast<std::uint32_t>(Roll(dice, 0, 2) ? 12385 : Roll(dice, 100, 32760));
        SeedRandom(77);
        const PackedDib plain = PlainScatter(source, radius, seed);
        const std::uint32_t state = RandomState();
        SeedRandom(77);
        ASSERT_EQ(Difference(Scatter(source, radius, seed, tables), plain), "")
            << size.width << "x" << size.height << " " << bits << " bits, " << radius;
        EXPECT_EQ(RandomState(), state);
      }
    }
  }
}

}  // namespace
}  // namespace glyphmotion
