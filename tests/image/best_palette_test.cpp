// SPDX-License-Identifier: MIT
#include "image/best_palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "image/quantise.h"
#include "image/remap.h"
#include "random_images.h"

namespace glyphmotion {
namespace {

struct Made {
  Palette palette{};
  int count = 0;
};

Made MadeFor(const FrameList& frames, int wanted, std::optional<Rgb> without = {}) {
  Made made;
  made.count = wanted;
  EXPECT_TRUE(BestPalette(frames, without, made.count, made.palette));
  return made;
}

// A soft gradient with noise: more colours than are points of their own, over the whole cube.
PackedDib NoisyGradient(Dice& dice, int width, int height) {
  PackedDib dib = BlankDib(width, height, nullptr, 24);
  const DibView view(dib);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const auto level = [&](int base) { return std::clamp(base + Roll(dice, -12, 12), 0, 255); };
      view.SetPixel(x, y, MakeColour(level(255 * x / width), level(255 * y / height), level(255 - 200 * x / width)));
    }
  return dib;
}

struct Sum {
  double pixels = 0, red = 0, green = 0, blue = 0;
};

// The squared error of the frames in a palette, and the sums of the pixels of each entry.
double ErrorIn(const FrameList& frames, const Made& made, std::vector<Sum>* sums = nullptr) {
  double error = 0;
  for (int i = 0; i < frames.count; ++i) {
    const DibView image(LockedFrame(frames, i)->image);
    for (int y = 0; y < image.Height(); ++y)
      for (int x = 0; x < image.Width(); ++x) {
        const Rgb c = RgbOf(image.GetPixel(x, y));
        const auto at = static_cast<std::size_t>(NearestColour(c.red, c.green, c.blue, made.palette, made.count));
        const Rgb e = made.palette[at];
        const int r = e.red - c.red, g = e.green - c.green, b = e.blue - c.blue;
        error += 3 * r * r + 4 * g * g + 2 * b * b;
        if (!sums) continue;
        Sum& sum = (*sums)[at];
        sum = {sum.pixels + 1, sum.red + c.red, sum.green + c.green, sum.blue + c.blue};
      }
  }
  return error;
}

// One plain round of k-means from a palette.
Made Improved(const FrameList& frames, Made made) {
  std::vector<Sum> sums(256);
  ErrorIn(frames, made, &sums);
  for (std::size_t i = 0; i < 256; ++i) {
    const auto mean = [&](double sum) { return static_cast<std::uint8_t>(sum / sums[i].pixels + 0.5); };
    if (sums[i].pixels > 0) made.palette[i] = {mean(sums[i].red), mean(sums[i].green), mean(sums[i].blue)};
  }
  return made;
}

// Colours that are points of their own, and so many that cells of them are.
TEST(BestPalette, IsNearTheOptimumAndFarBetterThanTheOctree) {
  const struct {
    int width, height, wanted;
    double most;  // of the octree's error
  } rows[] = {
      {150, 100, 255, 0.74}, {150, 100, 16, 0.8}, {150, 100, 2, 0.9}, {400, 250, 255, 0.8}, {400, 250, 40, 0.84}};
  for (const auto& row : rows) {
    Dice dice(7);
    TestFrames frames;
    frames.Append(NoisyGradient(dice, row.width, row.height));
    const Made best = MadeFor(frames.list, row.wanted);
    EXPECT_EQ(best.count, row.wanted);
    const double error = ErrorIn(frames.list, best);
    EXPECT_GT(ErrorIn(frames.list, Improved(frames.list, best)), 0.97 * error) << row.width << " " << row.wanted;
    Made octree;
    octree.count = row.wanted;
    ASSERT_TRUE(QuantiseFrames(frames.list, octree.count, octree.palette));
    EXPECT_LT(error, row.most * ErrorIn(frames.list, octree)) << row.width << " " << row.wanted;
  }
}

TEST(BestPalette, FewEnoughColoursAreExactAndTheReservedOneIsLeftOut) {
  TestFrames frames;
  const PackedDib image = BlankDib(300, 2, nullptr, 24);
  // Neighbours that differ in the lowest bits, and one colour of more pixels than a byte counts.
  const Colour colours[] = {0x000000, 0x000001, 0x010100, 0x7F7F80, 0x7F8080, 0xFFFFFF};
  for (int i = 0; i < 600; ++i) DibView(image).SetPixel(i % 300, i / 300, colours[i < 500 ? 5 : i % 5]);
  frames.Append(DuplicateDib(image));
  const auto listed = [](const Made& made) {
    std::vector<Colour> list;
    for (int i = 0; i < made.count; ++i) list.push_back(ColourOf(made.palette[static_cast<std::size_t>(i)]));
    std::sort(list.begin(), list.end());
    return list;
  };
  std::vector<Colour> all(std::begin(colours), std::end(colours));
  std::sort(all.begin(), all.end());
  EXPECT_EQ(listed(MadeFor(frames.list, 6)), all);
  EXPECT_EQ(listed(MadeFor(frames.list, 0)), all);
  EXPECT_EQ(MadeFor(frames.list, 5).count, 5);
  all.pop_back();
  EXPECT_EQ(listed(MadeFor(frames.list, 6, Rgb{255, 255, 255})), all);
  EXPECT_EQ(listed(MadeFor(frames.list, 256, Rgb{1, 2, 3})).size(), 6u);
  TestFrames flat;
  flat.Append(SolidDib(20, 20, 0x123456));
  EXPECT_EQ(MadeFor(flat.list, 256, RgbOf(0x123456)).count, 0);
}

// 60 pixels of an outline among 100,000 of a gradient that could use every entry.
TEST(BestPalette, AThinLineFarFromTheOtherColoursKeepsItsOwn) {
  Dice dice(3);
  TestFrames frames;
  PackedDib image = NoisyGradient(dice, 400, 250);
  for (int x = 0; x < 60; ++x) DibView(image).SetPixel(x, 5, MakeColour(250, 0, 0));
  frames.Append(std::move(image));
  const Made best = MadeFor(frames.list, 255);
  const Rgb nearest = best.palette[static_cast<std::size_t>(NearestColour(250, 0, 0, best.palette, best.count))];
  EXPECT_NEAR(nearest.red, 250, 8);
  EXPECT_NEAR(nearest.green, 0, 8);
  EXPECT_NEAR(nearest.blue, 0, 8);
}

TEST(BestPalette, DependsOnTheColoursAloneNotOnTheirPlaces) {
  Dice dice(5);
  const PackedDib whole = NoisyGradient(dice, 120, 90);
  std::vector<Colour> pixels;
  for (int i = 0; i < 120 * 90; ++i) pixels.push_back(DibView(whole).GetPixel(i % 120, i / 120));
  std::shuffle(pixels.begin(), pixels.end(), dice);
  TestFrames one, two;
  one.Append(DuplicateDib(whole));
  for (int half = 0; half < 2; ++half) {
    PackedDib part = BlankDib(90, 60, nullptr, 24);
    for (int i = 0; i < 90 * 60; ++i)
      DibView(part).SetPixel(i % 90, i / 90, pixels[static_cast<std::size_t>(half * 90 * 60 + i)]);
    two.Append(std::move(part));
  }
  const Made a = MadeFor(one.list, 100), b = MadeFor(two.list, 100);
  EXPECT_EQ(a.count, b.count);
  EXPECT_EQ(a.palette, b.palette);
}

}  // namespace
}  // namespace glyphmotion
