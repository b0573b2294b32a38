// SPDX-License-Identifier: MIT
// Iris and Background Iris, their mask and their cycle.
#include <gtest/gtest.h>

#include <array>

#include "effects/effect_checks.h"
#include "effects/iris_mask.h"
#include "image/filters.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

struct Effect {
  const char *name, *stem, *enable;
  std::array<int, 5> materials, irises;
  std::string Key(const std::string& rest) const { return stem + rest; }
};
const Effect kIrisEffects[] = {
    {"iris", "Style002", "FillEnable", {158, 160, 162, 165, 168}, {191, 195, 199, 203, 207}},
    {"background-iris", "Style013", "BackgroundEnable", {609, 611, 613, 616, 619}, {642, 646, 650, 654, 658}}};

TEST(Iris, TheCycleRunsOverTheEnabledMaterials) {
  for (const Effect& effect : kIrisEffects) {
    for (int enables : {0, 1, 2, 5, 6, 7}) {
      for (int frames : {2, 3, 5, 65}) {
        Settings settings = {{effect.Key("Frames"), std::to_string(frames)}};
        for (int i = 0; i < 3; ++i) {
          settings.emplace_back(effect.Key(effect.enable) + std::to_string(3 + i), enables >> i & 1 ? "1" : "0");
        }
        const Built built = BuildWith(effect.name, settings);
        const int transitions = 2 + (enables & 1) + (enables >> 1 & 1) + (enables >> 2 & 1);
        const int each = frames / transitions;
        ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(each * transitions)) << built.result.message;
        EXPECT_EQ(built.result.status == RenderStatus::Done, each > 0) << "a run without frames is an error";
        for (int i = 0; i < each * transitions; ++i) {
          const auto at = static_cast<std::size_t>(i);
          EXPECT_EQ(built.frames[at].delay, i % each ? 4 : 104) << effect.name << frames << " " << i;
          EXPECT_EQ(built.progress[at], std::make_pair(std::int64_t{i}, std::int64_t{frames}));
        }
      }
    }
  }
}

TEST(Iris, ATransitionStartsFromTheMaterialReachedLast) {
  for (const Effect& effect : kIrisEffects) {
    const std::string first = std::to_string(effect.materials[0]);
    // The third is off: 1, 2, 4, 5.
    const int order[] = {0, 1, 3, 4};
    const char* const colours[] = {"#102030", "#405060", "#700000", "#00a0b0", "#f0e0d0"};
    Settings settings = {{effect.Key("Frames"), "12"}, {effect.Key(effect.enable) + "3", "0"}};
    for (std::size_t i = 0; i < 5; ++i) settings.emplace_back(std::to_string(effect.materials[i]), colours[i]);
    const Built built = BuildWith(effect.name, settings);
    ASSERT_EQ(built.frames.size(), 12u) << built.result.message;
    for (std::size_t t = 0; t < 4; ++t) {
      const Built alone = BuildWith(effect.name, {{effect.Key("Frames"), "5"}, {first, colours[order[t]]}});
      ASSERT_FALSE(alone.frames.empty());
      EXPECT_EQ(built.frames[3 * t], alone.frames[0]) << effect.name << " " << t;
    }
  }
}

TEST(Iris, AMaterialOpensThroughTheIrisOfItsNumber) {
  // Two materials: the second opens through iris 2, the way back to the first through iris 1, as in the sample.
  for (const Effect& effect : kIrisEffects) {
    Settings settings = {{effect.Key("Frames"), "4"}};
    for (int i = 3; i <= 5; ++i) settings.emplace_back(effect.Key(effect.enable) + std::to_string(i), "0");
    const auto with = [&](const std::string& rest, const char* value) {
      Settings all = settings;
      all.emplace_back(effect.Key(rest), value);
      return BuildWith(effect.name, all);
    };
    const Built plain = BuildWith(effect.name, settings);
    ASSERT_EQ(plain.frames.size(), 4u);
    for (const auto& [one, two] : {std::pair(with("IrisStyle1", "4"), with("IrisStyle2", "4")),
                                   std::pair(with("IrisSize1", "7"), with("IrisSize2", "7"))}) {
      EXPECT_EQ(one.frames.at(1), plain.frames[1]);
      EXPECT_FALSE(one.frames.at(3) == plain.frames[3]);
      EXPECT_FALSE(two.frames.at(1) == plain.frames[1]);
      EXPECT_EQ(two.frames.at(3), plain.frames[3]);
    }
  }
}

TEST(Iris, BackgroundsStandInAlphaRunsToo) {
  const Built built =
      BuildWith("background-iris", {{"Style013Frames", "5"}, {"609", "#123456"}, {"62", "1"}, {"63", "1"}});
  ASSERT_EQ(built.frames.size(), 5u) << built.result.message;
  EXPECT_EQ(built.frames[0].bits, 32);
  EXPECT_EQ(PixelOf(built.frames[0], 0, 0), 0x563412u);
}

// The red channel of a mask's reading in three channels.
int RedAt(const PackedDib& picture, int x, int y) { return RedOf(DibView(picture).GetPixel(x, y)); }

TEST(IrisMask, SquaresShrinkTowardsTheirCells) {
  for (int size : {4, 5, 12, 64}) {
    for (double phase : {0.01, 0.3, 0.5, 0.77, 0.999}) {
      const int width = 53, height = 31, cell = size * 4, inset = static_cast<int>(cell * phase) / 2;
      const PackedDib large = BlankDib(width * 4, height * 4, nullptr, 24);
      const DibView view(large);
      for (int y = 0; y < height * 4; ++y) {
        for (int x = 0; x < width * 4; ++x) {
          const auto inside = [&](int v) { return v % cell >= inset && v % cell < cell - inset; };
          if (inside(x) && inside(y)) view.SetPixel(x, y, 0xFFFFFF);
        }
      }
      const PackedDib small = ResampleByPercent(large, 25, 25);
      const PackedDib mask = IrisMask(width, height, kIrisSquare, size, phase);
      ASSERT_TRUE(mask);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          ASSERT_EQ(static_cast<int>(DibView(mask).GetPixel(x, y)), RedAt(small, x, y)) << size << " " << phase;
        }
      }
    }
  }
}

double Mean(const PackedDib& mask) {
  const DibView view(mask);
  double sum = 0;
  for (int y = 0; y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) sum += view.GetPixel(x, y);
  }
  return sum / view.Width() / view.Height();
}

TEST(IrisMask, EveryStyleClosesFromWhiteToNothing) {
  for (int style = 0; style <= kIrisNone; ++style) {
    EXPECT_EQ(Mean(IrisMask(70, 40, style, 12, 0.0)), 255.0) << style;
    double before = 255.0;
    for (double phase : {0.1, 0.3, 0.5, 0.7, 0.9, 0.99}) {
      const double mean = Mean(IrisMask(70, 40, style, 12, phase));
      if (style == kIrisNone) {
        EXPECT_EQ(mean, 0.0);
      } else {
        EXPECT_LT(mean, before) << style << " " << phase;
      }
      before = mean;
    }
    EXPECT_LT(before, 40.0) << style;
  }
}

TEST(IrisMask, TheLinesOfAStyleRunItsWay) {
  const int width = 120, height = 60;
  // One step along the line from (x, y) leads to the same value, well inside.
  const struct {
    int style, x0, x1, y0, y1, dx, dy;
  } rows[] = {{kIrisHorizontalBlind, 10, 100, 10, 50, 1, 0}, {kIrisVerticalBlind, 10, 100, 10, 50, 0, 1},
              {kIrisDiagonalLeft, 10, 100, 10, 50, 1, 1},    {kIrisDiagonalRight, 10, 100, 10, 50, -1, 1},
              {kIrisChevronLeft, 10, 100, 5, 24, 1, 1},      {kIrisChevronLeft, 10, 100, 36, 55, -1, 1},
              {kIrisChevronRight, 10, 100, 5, 24, 1, 1},     {kIrisChevronRight, 10, 100, 36, 55, -1, 1},
              {kIrisSquare, 10, 100, 10, 40, 12, 12},        {kIrisDiamond, 13, 100, 13, 34, 12, 12},
              {kIrisCircle, 13, 100, 13, 34, 12, 0}};
  for (const auto& row : rows) {
    const PackedDib mask = IrisMask(width, height, row.style, 12, 0.55);
    const DibView view(mask);
    ASSERT_TRUE(view);
    for (int y = row.y0; y < row.y1; ++y) {
      for (int x = row.x0; x < row.x1; ++x) {
        ASSERT_NEAR(static_cast<int>(view.GetPixel(x, y)), static_cast<int>(view.GetPixel(x + row.dx, y + row.dy)), 1)
            << row.style << " at " << x << "," << y;
      }
    }
  }
}

TEST(IrisMask, TheMixDividesEachProductByItself) {
  Dice dice(4);
  for (int round = 0; round < 10; ++round) {
    const int width = Roll(dice, 1, 80), height = Roll(dice, 1, 20);
    const PackedDib first = RandomImage(dice, width, height, 24), second = RandomImage(dice, width, height, 24);
    const PackedDib mask = RandomImage(dice, width, height, 8);
    const PackedDib mixed = MixThroughMask(first, second, mask);
    ASSERT_TRUE(mixed);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const auto m = DibView(mask).GetPixel(x, y), a = DibView(first).GetPixel(x, y),
                   b = DibView(second).GetPixel(x, y);
        std::uint32_t expected = 0;
        for (int shift = 0; shift < 24; shift += 8) {
          expected |= ((a >> shift & 0xFF) * m / 255 + (b >> shift & 0xFF) * (255 - m) / 255) << shift;
        }
        ASSERT_EQ(DibView(mixed).GetPixel(x, y), expected);
      }
    }
  }
  EXPECT_FALSE(MixThroughMask({}, SolidDib(2, 2, 0), BlankMask(2, 2)));
}

}  // namespace
}  // namespace glyphmotion::test
