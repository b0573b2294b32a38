// SPDX-License-Identifier: MIT
#include "image/remap.h"

#include <gtest/gtest.h>

#include <utility>

#include "random_images.h"

namespace glyphmotion {
namespace {

// The plain twins: no memory of anything, one pixel at a time through get and set pixel.

int PlainNearest(Rgb c, const Palette& palette, int count) {
  for (int i = 0; i < count; ++i) {
    if (palette[static_cast<std::size_t>(i)] == c) return i;
  }
  int best = 0, least = 1000000;
  for (int i = 0; i < count; ++i) {
    const Rgb e = palette[static_cast<std::size_t>(i)];
    const int r = e.red - c.red, g = e.green - c.green, b = e.blue - c.blue;
    if (3 * r * r + 4 * g * g + 2 * b * b < least) {
      least = 3 * r * r + 4 * g * g + 2 * b * b;
      best = i;
    }
  }
  return best;
}

int PlainMatch(Rgb c, const Palette& palette, int count, bool fast) {
  if (!fast) return PlainNearest(c, palette, count);
  for (int i = 0; i < count; ++i) {
    if (palette[static_cast<std::size_t>(i)] == c) return i;
  }
  const auto cut = [](int v) { return static_cast<std::uint8_t>(v >> 3 << 3); };
  return PlainNearest({cut(c.red), cut(c.green), cut(c.blue)}, palette, count);
}

PackedDib PlainRemap(const PackedDib& image, const Palette& palette, int depth, int count, bool fast) {
  const DibView source(image);
  PackedDib remapped = BlankDib(source.Width(), source.Height(), &palette, depth);
  const DibView target(remapped);
  const bool oneBit = depth == 1;
  for (int y = 0; y < source.Height(); ++y) {
    for (int x = 0; x < source.Width(); ++x) {
      const std::uint32_t value = source.GetPixel(x, y);
      const Rgb c = source.Bits() < 9 ? source.TableEntry(static_cast<int>(value)) : RgbOf(value);
      const std::uint8_t level = value ? 255 : 0;
      int index;
      if (source.Bits() == 1) {
        index = oneBit ? static_cast<int>(value) : PlainMatch({level, level, level}, palette, count, fast);
      } else if (oneBit) {
        index = Brightness(c) >= 129;
      } else if (source.Bits() < 9) {
        index = PlainNearest(c, palette, 1 << depth);
      } else {
        index = PlainMatch(c, palette, count, fast);
      }
      target.SetPixel(x, y, static_cast<std::uint32_t>(index));
    }
  }
  return remapped;
}

TEST(Remap, EverySourceAndTargetGivesThePlainResult) {
  Dice dice(1);
  for (int round = 0; round < 60; ++round) {
    const Palette palette = RandomPalette(dice, round % 3 ? 256 : 5);
    const int counts[] = {256, 0, 1, Roll(dice, 2, 255)};
    for (int depth : {1, 2, 3, 4, 5, 8}) {
      const int count = counts[round % 4];
      const bool fast = round & 4;
      ColourMatcher matcher(palette, depth, count, {.fastRemap = fast});
      for (int bits : {1, 4, 8, 24, 24}) {
        const PackedDib image = RandomImage(dice, Roll(dice, 1, 40), Roll(dice, 1, 5), bits);
        ASSERT_EQ(Difference(RemapImage(image, matcher), PlainRemap(image, palette, depth, count, fast)), "")
            << bits << " to " << depth << " bits, " << count << " entries, fast " << fast;
      }
    }
  }
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

// Few entries, and entries that crowd into one place, make the longest and the shortest lists of candidates.
TEST(Remap, WholeCubesOfColoursMatchTheNearestEntry) {
  Dice dice(2);
  for (int round = 0; round < 12; ++round) {
    Palette palette = RandomPalette(dice);
    const int centre = Roll(dice, 20, 235), reach = Roll(dice, 1, 19);
    if (round & 1) {
      const auto near = [&] { return static_cast<std::uint8_t>(centre + Roll(dice, -reach, reach)); };
      for (auto& entry : palette) entry = {near(), near(), near()};
    }
    for (bool fast : {false, true}) {
      ColourMatcher matcher(palette, 8, 256, {.fastRemap = fast});
      const PackedDib image = BlankDib(4096, 1, nullptr, 24);
      const DibView view(image);
      const int red = Roll(dice, 0, 240), green = Roll(dice, 0, 240), blue = round & 1 ? centre - 8 : 240;
      for (int i = 0; i < 4096; ++i) {
        view.SetPixel(i, 0, MakeColour(red + (i >> 8), green + (i >> 4 & 15), blue + (i & 15)));
      }
      ASSERT_EQ(Difference(RemapImage(image, matcher), PlainRemap(image, palette, 8, 256, fast)), "") << round;
    }
  }
}

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

TEST(Remap, SortIsAStableBubbleSort) {
  Dice dice(3);
  for (int round = 0; round < 20; ++round) {
    Palette palette = RandomPalette(dice, round % 2 ? 3 : 256);
    Palette plain = palette;
    const auto count = static_cast<std::size_t>(round ? Roll(dice, 0, 256) : 256);
    for (bool swapped = true; swapped;) {
      swapped = false;
      for (std::size_t i = 1; i < count; ++i) {
        if (Brightness(plain[i]) >= Brightness(plain[i - 1])) continue;
        std::swap(plain[i], plain[i - 1]);
        swapped = true;
      }
    }
    SortPaletteByBrightness(palette, static_cast<int>(count));
    EXPECT_EQ(palette, plain);
  }
}

TEST(Remap, MalformedPicturesGiveNothing) {
  Dice dice(4);
  const PackedDib alpha = RandomImage(dice, 5, 5, 32), picture = RandomImage(dice, 5, 5, 24);
  ColourMatcher good(GreyRamp(), 8, 256, {}), deep(GreyRamp(), 24, 256, {}), flat(GreyRamp(), 0, 256, {});
  EXPECT_FALSE(RemapImage(alpha, good));
  EXPECT_FALSE(RemapImage({}, good));
  EXPECT_FALSE(RemapImage(picture, deep));
  EXPECT_FALSE(RemapImage(picture, flat));
}

TEST(Remap, MaskReplaceChangesThePixelsOfOneColour) {
  Dice dice(5);
  for (int depth : {1, 4, 8}) {
    for (int bits : {1, 4, 8, 24, 32}) {
      const int width = Roll(dice, 1, 30), height = Roll(dice, 1, 6);
      const PackedDib remapped = RandomImage(dice, width, height, depth);
      // Smaller and larger sources: beyond their edge they read as white.
      const PackedDib source = RandomImage(dice, width + Roll(dice, -1, 1) + 1, height + 1 - Roll(dice, 0, 1), bits, 3);
      const DibView picture(source);
      const Colour colours[] = {kNoColour, picture.GetPixel(0, 0) & 0xFFFFFF};
      for (Colour colour : colours) {
        for (int index : {-1, 5}) {
          PackedDib plain = DuplicateDib(remapped);
          const DibView view(plain);
          for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
              if ((picture.GetPixel(x, y) & 0xFFFFFF) == (colour & 0xFFFFFF)) {
                view.SetPixel(x, y, static_cast<std::uint32_t>(index));
              }
            }
          }
          EXPECT_EQ(Difference(MaskReplace(remapped, source, colour, index), plain), "") << depth << ' ' << bits;
        }
      }
    }
  }
  EXPECT_FALSE(MaskReplace({}, SolidDib(1, 1, 0), 0, 0));
  EXPECT_FALSE(MaskReplace(SolidDib(1, 1, 0), {}, 0, 0));
}

TEST(Remap, EveryAllocationMayFailAndNothingLeaks) {
  Dice dice(6);
  const PackedDib image = RandomImage(dice, 9, 3, 24);
  const auto before = LiveBlocks();
  for (std::uint64_t n = 1;; ++n) {
    FailAllocation(n);
    bool done = false;
    {
      ColourMatcher matcher(GreyRamp(), 8, 256, {});
      const PackedDib remapped = RemapImage(image, matcher);
      const PackedDib replaced = MaskReplace(remapped, image, 0, 1);
      done = static_cast<bool>(replaced);
      EXPECT_EQ(done, AllocationsAsked() < n);
    }
    EXPECT_EQ(LiveBlocks().blocks, before.blocks);
    EXPECT_EQ(LiveBlocks().locks, before.locks);
    if (done) break;
  }
  FailAllocation(0);
}

}  // namespace
}  // namespace glyphmotion
