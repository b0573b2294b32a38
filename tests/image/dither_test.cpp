// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "image/remap.h"
#include "random_images.h"

namespace glyphmotion {
namespace {

struct Job {
  Palette palette;
  int depth, count;
  RemapOptions options;
};

Rgb ColourAt(const DibView& source, int x, int r) {
  const std::uint32_t value = source.GetPixel(x, source.Height() - 1 - r);
  return source.Bits() < 9 ? source.TableEntry(static_cast<int>(value)) : RgbOf(value);
}

int PlainMatch(const int* value, const Job& job) {
  const auto exact = [&](int i) {
    const Rgb c = job.palette[static_cast<std::size_t>(i)];
    return c.red == value[0] && c.green == value[1] && c.blue == value[2];
  };
  if (!job.options.fastRemap) return NearestColour(value[0], value[1], value[2], job.palette, job.count);
  for (int i = 0; i < job.count; ++i) {
    if (exact(i)) return i;
  }
  return NearestColour(value[0] & 0xF8, value[1] & 0xF8, value[2] & 0xF8, job.palette, job.count);
}

// The plain twin of the colour path: two lines of sums, one pixel after the other. `before` and `beforeDithered`: of
// the last frame, or nothing.
PackedDib PlainColourDither(const PackedDib& image, const Job& job, const PackedDib& before = {},
                            const PackedDib& beforeDithered = {}) {
  const DibView was(before), wasDithered(beforeDithered);
  const DibView source(image);
  const int width = source.Width(), height = source.Height();
  PackedDib dithered = BlankDib(width, height, &job.palette, job.depth);
  const DibView target(dithered);
  std::vector<int> current(static_cast<std::size_t>(width) * 3), next(current.size());
  for (int r = 0; r < height; ++r) {
    for (int x = 0; x < width; ++x) {
      const Rgb c = ColourAt(source, x, r);
      const std::size_t at = static_cast<std::size_t>(x) * 3;
      current[at] += c.red;
      current[at + 1] += c.green;
      current[at + 2] += c.blue;
    }
    for (int x = 0; x < width; ++x) {
      const std::size_t at = static_cast<std::size_t>(x) * 3;
      for (std::size_t k = 0; k < 3; ++k) current[at + k] = std::clamp(current[at + k], 0, 255);
      const int y = height - 1 - r;
      const bool kept = was && was.GetPixel(x, y) == source.GetPixel(x, y);
      const int index = kept ? static_cast<int>(wasDithered.GetPixel(x, y)) : PlainMatch(&current[at], job);
      target.SetPixel(x, y, static_cast<std::uint32_t>(index));
      if (kept) continue;
      const Rgb found = job.palette[static_cast<std::size_t>(index)];
      const int entry[] = {found.red, found.green, found.blue};
      for (std::size_t k = 0; k < 3; ++k) {
        const int error = current[at + k] - entry[k];
        if (x + 1 < width) current[at + 3 + k] += (7 * error) >> 4;
        if (r + 1 == height) continue;
        if (x >= 2) next[at - 3 + k] += (3 * error) >> 4;
        if (x + 1 < width) next[at + 3 + k] += error >> 4;
        next[at + k] += (5 * error) >> 4;
      }
    }
    current.swap(next);
    std::fill(next.begin(), next.end(), 0);
  }
  return dithered;
}

// The plain twin of the one-bit path: the work image in one array, whose rows end in up to three bytes of padding.
PackedDib PlainGreyDither(const PackedDib& image, const Job& job) {
  const DibView source(image);
  const int width = source.Width(), height = source.Height(), stride = (width + 3) / 4 * 4;
  PackedDib dithered = BlankDib(width, height, &job.palette, 1);
  const DibView target(dithered);
  std::vector<int> tone(256), work(static_cast<std::size_t>(stride * height));
  const double contrast = job.options.ditherContrast;
  double v = job.options.ditherBrightness - contrast;
  for (int& t : tone) {
    t = v > 254 ? 254 : v < 1 ? 1 : static_cast<int>(v);
    v += 256 / (256 - 2 * contrast);
  }
  int low = 255, high = 0;
  for (int r = 0; r < height; ++r) {
    for (int x = 0; x < width; ++x) {
      const int level = Brightness(ColourAt(source, x, r));
      work[static_cast<std::size_t>(r * stride + x)] = level;
      low = std::min(low, level);
      high = std::max(high, level);
    }
  }
  const auto add = [&](int at, int e) {
    int& value = work[static_cast<std::size_t>(at)];
    value = std::clamp(value + e, 0, 255);
  };
  for (int r = 0; r < height; ++r) {
    for (int x = 0; x < width; ++x) {
      const int at = r * stride + x, g = tone[static_cast<std::size_t>(work[static_cast<std::size_t>(at)])];
      const bool light = g > (low + high) >> 1;
      target.SetPixel(x, height - 1 - r, light);
      const int e = (g - (light ? high : low)) >> 4;
      const bool below = r + 1 < height;
      if (below && x + 1 < width) add(at + stride + 1, e);
      if (below && x != 1) add(at + stride - 1, 3 * e);
      if (below) add(at + stride, 5 * e);
      if (x + 1 < width) add(at + 1, 7 * e);
    }
  }
  return dithered;
}

TEST(Dither, ColourIsDiffusedAsInThePlainLoop) {
  Dice dice(1);
  for (int round = 0; round < 150; ++round) {
    Job job = {RandomPalette(dice, round % 5 ? 256 : 4), 8, 256, {.fastRemap = round % 4 == 3}};
    const int depths[] = {8, 2, 4, 5, 8}, counts[] = {256, 16, 40, 1, 0, 5};
    job.depth = depths[round % 5];
    job.count = counts[round % 6];
    ColourMatcher matcher(job.palette, job.depth, job.count, job.options);
    // Two pictures of one run, of which the second takes parts of the first; all widths and heights near the steps.
    const int bits = round % 3 == 2 ? (round % 2 ? 4 : 8) : 24;
    const PackedDib first = RandomImage(dice, 1 + round % 37, 1 + round % 11, bits, 256, 1 + round % 7);
    const PackedDib second = DuplicateDib(first);
    for (int i = 0; i < 5; ++i) {
      const DibView view(second);
      view.SetPixel(Roll(dice, 0, view.Width() - 1), Roll(dice, 0, view.Height() - 1), dice());
    }
    ASSERT_EQ(Difference(DitherImage(first, matcher), PlainColourDither(first, job)), "") << round;
    ASSERT_EQ(Difference(DitherImage(second, matcher), PlainColourDither(second, job)), "") << round;
    const PackedDib dithered = DitherImage(first, matcher);
    const PackedDib kept =
        bits == 24 ? PlainColourDither(second, job, first, dithered) : PlainColourDither(second, job);
    ASSERT_EQ(Difference(DitherStable(second, first, dithered, matcher), kept), "") << round;
    ASSERT_EQ(Difference(DitherStable(second, {}, {}, matcher), PlainColourDither(second, job)), "") << round;
  }
}

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

TEST(Dither, OneBitIsDiffusedAsInThePlainLoop) {
  Dice dice(2);
  const int tones[][2] = {{20, 20}, {0, 0}, {255, 0}, {0, 128}, {-300, 127}, {50, 200}, {10, -40}};
  for (int round = 0; round < 150; ++round) {
    const auto& tone = tones[round % 7];
    const Job job = {RandomPalette(dice), 1, 256, {.ditherBrightness = tone[0], .ditherContrast = tone[1]}};
    ColourMatcher matcher(job.palette, job.depth, job.count, job.options);
    const int bits = round % 3 == 2 ? (round % 2 ? 4 : 8) : 24;
    const PackedDib image = RandomImage(dice, 1 + round % 19, 1 + round % 9, bits, 256, 1 + round % 7);
    ASSERT_EQ(Difference(DitherImage(image, matcher), PlainGreyDither(image, job)), "") << round;
  }
}

TEST(Dither, MalformedPicturesGiveNothing) {
  Dice dice(3);
  ColourMatcher good(GreyRamp(), 8, 256, {}), one(GreyRamp(), 1, 256, {}), deep(GreyRamp(), 24, 256, {}),
      flat(GreyRamp(), 0, 256, {});
  for (ColourMatcher* matcher : {&good, &one}) {
    EXPECT_FALSE(DitherImage(RandomImage(dice, 5, 5, 1), *matcher));
    EXPECT_FALSE(DitherImage(RandomImage(dice, 5, 5, 32), *matcher));
    EXPECT_FALSE(DitherImage({}, *matcher));
  }
  EXPECT_FALSE(DitherImage(RandomImage(dice, 5, 5, 24), deep));
  EXPECT_FALSE(DitherImage(RandomImage(dice, 5, 5, 24), flat));
}

TEST(Dither, EveryAllocationMayFailAndNothingLeaks) {
  Dice dice(4);
  const PackedDib image = RandomImage(dice, 9, 3, 24);
  const auto before = LiveBlocks();
  for (int depth : {1, 8}) {
    bool done = false;
    for (std::uint64_t n = 1; !done; ++n) {
      FailAllocation(n);
      {
        ColourMatcher matcher(GreyRamp(), depth, 256, {});
        done = static_cast<bool>(DitherImage(image, matcher));
        EXPECT_EQ(done, AllocationsAsked() < n);
      }
      EXPECT_EQ(LiveBlocks().blocks, before.blocks);
      EXPECT_EQ(LiveBlocks().locks, before.locks);
    }
  }
  FailAllocation(0);
}

}  // namespace
}  // namespace glyphmotion
