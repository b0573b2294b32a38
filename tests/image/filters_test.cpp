// SPDX-License-Identifier: MIT
// The fast filters against plain twins, byte for byte.
#include "image/filters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "image/resample_filters.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::mt19937& Rng() {
  static std::mt19937 rng(20240917);
  return rng;
}
int Random(int low, int high) { return low + static_cast<int>(Rng()() % static_cast<unsigned>(high - low + 1)); }

enum Content { kNoise, kTextLike, kSoftText, kGradient, kConstant, kCheckers, kSparse, kContents };

int Sample(int content, int x, int y, int k) {
  switch (content) {
    case kNoise:
      return Random(0, 255);
    case kTextLike:
      return (x / 7 + y / 9) % 3 == 1 && x % 11 > 3 ? 255 : 0;
    case kSoftText:
      return std::clamp(((x % 23) - 11) * ((x % 23) - 11) + ((y % 17) - 8) * ((y % 17) - 8) - 50, 0, 255);
    case kGradient:
      return (x * (k + 2) + y * 3) & 255;
    case kConstant:
      return 77 * (k + 1) & 255;
    case kCheckers:
      return (x + y) & 1 ? 255 : 0;
    default:
      return Random(0, 400) == 0 ? Random(1, 255) : 0;
  }
}

PackedDib Picture(int width, int height, int depth, int content) {
  PackedDib dib = BlankDib(width, height, &GreyRamp(), depth);
  const DibView view(dib);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      std::uint32_t value = 0;
      for (int k = 0; k < (depth + 7) / 8; ++k) value |= static_cast<std::uint32_t>(Sample(content, x, y, k)) << 8 * k;
      view.SetPixel(x, y, value);
    }
  }
  return dib;
}

// A picture as plain channels: channel k of (x, y) at ((y * width) + x) * channels + k.
struct Plain {
  int width, height, channels;
  Bytes bytes;
  std::uint8_t& At(int x, int y, int k) { return bytes[static_cast<std::size_t>((y * width + x) * channels + k)]; }
};

Plain ToPlain(const PackedDib& dib, int channels) {
  const DibView view(dib);
  Plain plain{view.Width(), view.Height(), channels, {}};
  plain.bytes.resize(static_cast<std::size_t>(plain.width * plain.height * channels));
  for (int y = 0; y < plain.height; ++y) {
    for (int x = 0; x < plain.width; ++x) {
      for (int k = 0; k < channels; ++k) plain.At(x, y, k) = static_cast<std::uint8_t>(view.GetPixel(x, y) >> 8 * k);
    }
  }
  return plain;
}

void BlurLine(const std::vector<double>& kernel, Bytes& line) {
  const int n = static_cast<int>(line.size()), k = 41, h = 20;
  if (k > n) return;
  const Bytes in = line;
  for (int i = 0; i < n; ++i) {
    double sum = 0, weight = 0;
    for (int t = 0; t < k; ++t) {
      const int j = i - h + t;
      if (j < 0 || j >= n) continue;
      sum += in[static_cast<std::size_t>(j)] * kernel[static_cast<std::size_t>(t)];
      weight += kernel[static_cast<std::size_t>(t)];
    }
    const bool middle = i >= h && i < n - h;
    line[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(middle ? sum + 0.5 : (sum + 0.5) / weight);
  }
}

Plain PlainBlur(Plain p, int softness) {
  const double sigma = softness / 10.0;
  std::vector<double> kernel(41);
  for (int i = -61; i <= 61; ++i)
    kernel[static_cast<std::size_t>((i + 61) / 3)] += std::exp(-i * i / (sigma * 18.0 * sigma));
  double sum = 0;
  for (double w : kernel) sum += w;
  for (double& w : kernel) w /= sum;
  for (int pass = 0; pass < 2; ++pass) {
    const int lines = pass ? p.width : p.height, length = pass ? p.height : p.width;
    Bytes line(static_cast<std::size_t>(length));
    for (int i = 0; i < lines; ++i) {
      for (int k = 0; k < p.channels; ++k) {
        const auto at = [&](int j) -> std::uint8_t& { return pass ? p.At(i, j, k) : p.At(j, i, k); };
        for (int j = 0; j < length; ++j) line[static_cast<std::size_t>(j)] = at(j);
        BlurLine(kernel, line);
        for (int j = 0; j < length; ++j) at(j) = line[static_cast<std::size_t>(j)];
      }
    }
  }
  return p;
}

Plain PlainPass(Plain& from, bool down, int target, const ResampleFilter& filter) {
  Plain to{down ? from.width : target, down ? target : from.height, from.channels, {}};
  to.bytes.resize(static_cast<std::size_t>(to.width * to.height * to.channels));
  const int source = down ? from.height : from.width;
  const double s = std::max(static_cast<double>(target) / source, 0.0001);
  double f = std::max(1.0, 1 / s), r = f * filter.support;
  if (r <= 0.5) f = 1, r = 0.500001;
  for (int c = 0; c < target; ++c) {
    const double centre = (c + 0.5) / s;
    const int first = std::max(0, static_cast<int>(centre - r + 0.5));
    const int end = std::min(source, static_cast<int>(centre + r + 0.5));
    std::vector<double> weights;
    double sum = 0;
    for (int j = first; j < end; ++j) weights.push_back(filter.kernel((j - centre + 0.5) / f));
    for (double w : weights) sum += w;
    if (sum != 0 && sum != 1) {
      for (double& w : weights) w /= sum;
    }
    for (int i = 0; i < (down ? to.width : to.height); ++i) {
      for (int k = 0; k < from.channels; ++k) {
        double v = 0;
        for (int j = first; j < end; ++j) {
          v += weights[static_cast<std::size_t>(j - first)] * (down ? from.At(i, j, k) : from.At(j, i, k));
        }
        (down ? to.At(i, c, k) : to.At(c, i, k)) = static_cast<std::uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v + 0.5);
      }
    }
  }
  return to;
}

Plain PlainResample(Plain p, int width, int height) {
  const double growth = static_cast<double>(width) / p.width * (static_cast<double>(height) / p.height);
  const ResampleFilter& filter = kResampleFilters[growth > 1 ? 12 : 13];
  const bool down = (p.height + height) * width <= (p.width + width) * height;
  Plain middle = PlainPass(p, down, down ? height : width, filter);
  return PlainPass(middle, !down, down ? width : height, filter);
}

void ExpectSame(const PackedDib& fast, const Plain& plain, const std::string& what) {
  ASSERT_TRUE(fast) << what;
  const Plain got = ToPlain(fast, plain.channels);
  ASSERT_EQ(got.width, plain.width) << what;
  ASSERT_EQ(got.height, plain.height) << what;
  if (got.bytes == plain.bytes) return;
  const auto at = std::mismatch(got.bytes.begin(), got.bytes.end(), plain.bytes.begin());
  const auto i = at.first - got.bytes.begin();
  const auto x = i / plain.channels % plain.width, y = i / plain.channels / plain.width;
  FAIL() << what << ": (" << x << ", " << y << ") is " << int{*at.first} << ", not " << int{*at.second};
}

std::string Describe(int width, int height, int depth, int content, int a, int b) {
  return std::to_string(width) + "x" + std::to_string(height) + " depth " + std::to_string(depth) + " content " +
         std::to_string(content) + " arguments " + std::to_string(a) + ", " + std::to_string(b);
}

TEST(Blur, EqualsThePlainReadingByteForByte) {
  const int softnesses[] = {1, 2, 3, 5, 7, 12, 30, 52, 102, 400, 1000000, -9};
  for (int round = 0; round < 260; ++round) {
    const int width = Random(1, 200), height = Random(1, 120), content = round % kContents;
    const int depth =
        std::array{8, 24, 32, 4, 1}[static_cast<std::size_t>(round % 23 < 19 ? round % 2 : 1 + round % 4)];
    const int softness = softnesses[Random(0, 11)];
    const std::string what = Describe(width, height, depth, content, softness, 0);
    const PackedDib source = Picture(width, height, depth, content);
    const Plain before = ToPlain(source, (depth + 7) / 8);
    const PackedDib result = Blur(source, softness);
    ExpectSame(result, PlainBlur(ToPlain(source, depth < 9 ? 1 : 3), softness), what);
    ExpectSame(source, before, what + ", the source");
    for (int x = 0; depth == 32 && x < width; ++x) {
      EXPECT_EQ(DibView(result).GetPixel(x, 0) >> 24, DibView(source).GetPixel(x, 0) >> 24) << "alpha stays";
    }
  }
}

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

TEST(Blur, NoWidthChangesNothingAndBordersKeepAConstant) {
  const PackedDib noise = Picture(60, 50, 8, kNoise);
  for (int softness : {0, 1})
    ExpectSame(Blur(noise, softness), ToPlain(noise, 1), "softness " + std::to_string(softness));
  const PackedDib white = Picture(60, 50, 24, kConstant);
  ExpectSame(Blur(white, 77), ToPlain(white, 3), "constant");
}

TEST(Resample, EqualsThePlainReadingByteForByte) {
  for (int round = 0; round < 260; ++round) {
    const int content = round % kContents;
    const int depth = std::array{8, 24, 32}[static_cast<std::size_t>(round % 3)];
    // Every fourth time both axes by the very same scale, where the order of the passes hangs on equality.
    const bool even = round % 4 == 0;
    const int percent = std::array{25, 50, 75, 200, 300, 400}[static_cast<std::size_t>(Random(0, 5))];
    const int width = even ? 4 * Random(1, 30) : Random(1, 120), height = even ? 4 * Random(1, 30) : Random(1, 120);
    const int newWidth = even ? width * percent / 100 : Random(1, 260);
    const int newHeight = even ? height * percent / 100 : Random(1, 260);
    if (newWidth == width && newHeight == height) continue;
    const PackedDib source = Picture(width, height, depth, content);
    ExpectSame(ResampleToSize(source, newWidth, newHeight),
               PlainResample(ToPlain(source, depth / 8), newWidth, newHeight),
               Describe(width, height, depth, content, newWidth, newHeight));
  }
}

TEST(Resample, LongLinesAndExtremeReductions) {
  const int rows[][4] = {{30000, 1, 1, 1}, {1, 30000, 1, 2}, {25000, 2, 2, 3}, {3000, 5, 7, 1}, {1, 1, 900, 3}};
  for (const auto& row : rows) {
    const PackedDib source = Picture(row[0], row[1], 8, kNoise);
    ExpectSame(ResampleToSize(source, row[2], row[3]), PlainResample(ToPlain(source, 1), row[2], row[3]),
               Describe(row[0], row[1], 8, kNoise, row[2], row[3]));
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
  const PackedDib dib = Picture(40, 40, 8, kNoise);
  for (const auto& size : {std::pair(80, 19), std::pair(80, 20), std::pair(80, 21)}) {
    ExpectSame(ResampleToSize(dib, size.first, size.second), PlainResample(ToPlain(dib, 1), size.first, size.second),
               "mixed");
  }
}

TEST(Resample, SizesAndDepths) {
  const PackedDib colour = Picture(11, 7, 24, kNoise);
  ExpectSame(ResampleByPercent(colour, 100, 100), ToPlain(colour, 3), "an unchanged copy");
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
    const PackedDib small = ResampleToSize(Picture(8, 8, depth, kConstant), 16, 16);
    EXPECT_EQ(DibView(small).Bits(), depth);
    for (int i = 0; i < 256; ++i) EXPECT_EQ(DibView(small).GetPixel(i % 16, i / 16), 0u);
  }
  EXPECT_EQ(DibView(ResampleToSize(Picture(8, 8, 8, kNoise), 5, 5)).TableEntry(99), (Rgb{99, 99, 99}));
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

TEST(Filters, EveryAllocationMayFailNothingLeaks) {
  const std::uint64_t blocks = LiveBlocks().blocks;
  for (int depth : {8, 24, 32, 4}) {
    for (std::uint64_t n = 1; n < 6; ++n) {
      const PackedDib source = Picture(50, 50, depth, kNoise);
      for (int filter = 0; filter < 2; ++filter) {
        FailAllocation(n);
        const PackedDib result = filter ? ResampleToSize(source, 70, 30) : Blur(source, 9);
        const bool failed = n <= AllocationsAsked();
        FailAllocation(0);
        EXPECT_EQ(!result, failed) << depth << " allocation " << n;
      }
    }
    EXPECT_EQ(LiveBlocks().blocks, blocks);
    EXPECT_EQ(LiveBlocks().locks, 0u);
  }
}

}  // namespace
}  // namespace glyphmotion
