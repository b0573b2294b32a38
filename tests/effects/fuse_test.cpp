// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/option_ends.h"
#include "effects/text_levels.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style009Frames";
constexpr const char* kFront = "gradient:linear,#ff0000-#0000ff,rotation=30";
constexpr const char* kBack = "gradient:linear,#00ff00-#ffffff,rotation=70";
const Settings kBare = {{"MainPadding", "2"},
                        {"Style009Soft", "0"},
                        {"Style009ShadowEnable", "0"},
                        {"Style009OutlineEnable", "0"},
                        {"459", kFront},
                        {"485", kBack},
                        {"463", "#102030"}};
constexpr Colour kBackground = MakeColour(0x10, 0x20, 0x30);

// The leaves by get and set pixel, every copy in its turn.
PackedDib PlainFill(const PackedDib& front, const PackedDib& back, int leaf, bool columns, double phase) {
  const DibView a(front), b(back);
  const int width = a.Width(), height = a.Height();
  PackedDib result = BlankDib(width, height, nullptr, 24);
  const DibView to(result);
  const auto copy = [&](const DibView& from, int x0, int y0, int x1, int y1, int dx, int dy) {
    for (int y = y0; y < y1; ++y) {
      for (int x = x0; x < x1; ++x) {
        if (x < width && y < height) to.SetPixel(x + dx, y + dy, from.GetPixel(x, y));
      }
    }
  };
  copy(b, 0, 0, width, height, 0, 0);
  if (!columns) {
    const int s = static_cast<int>(width * phase);
    for (int y = 0; y < height; y += 2 * leaf) {
      copy(a, 0, y, width, y + leaf, -s, 0);
      copy(a, 0, y + leaf, width, y + 2 * leaf, s, 0);
      copy(b, 0, y, width, y + leaf, width - s, 0);
      copy(b, 0, y + leaf, width, y + 2 * leaf, s - width, 0);
    }
  } else {
    const int s = static_cast<int>(height * phase);
    for (int x = 0; x < width; x += 2 * leaf) {
      copy(a, x, 0, x + leaf, height, 0, -s);
      copy(a, x + leaf, 0, x + 2 * leaf, height, 0, s);
      copy(b, x, 0, x + leaf, height, 0, height - s);
      copy(b, x + leaf, 0, x + 2 * leaf, height, 0, s - height);
    }
  }
  return result;
}

// Phases by the book: from -1 by steps of 1 / half, 0, then from 2 / half on.
std::vector<double> Phases(int frames) {
  const int half = frames / 2;
  const double step = 1.0 / half;
  std::vector<double> phases;
  double phase = -1.0;
  for (int i = 0; i < half; ++i, phase += step) phases.push_back(phase);
  phases.push_back(0.0);
  phase = step;
  for (int j = 1; j < half; ++j) phases.push_back(phase += step);
  return phases;
}

TEST(Fuse, FramesAreThePlainLeavesOfTheirPhases) {
  const Levels letters = LevelsOf({{"MainPadding", "2"}}, false);
  const PackedDib front = FillOf(kFront, letters.width, letters.height);
  const PackedDib back = FillOf(kBack, letters.width, letters.height);
  for (const int leaf : {1, 2, 5, 64}) {
    for (const int scroll : {0, 1}) {
      for (const int frames : {2, 3, 10, 13}) {
        Settings settings = kBare;
        settings.emplace_back("Style009Size", std::to_string(leaf));
        settings.emplace_back("Style009Scroll", std::to_string(scroll));
        settings.emplace_back(kFrames, std::to_string(frames));
        const Built built = BuildWith("fuse", settings);
        const std::vector<double> phases = Phases(frames);
        ASSERT_EQ(built.frames.size(), phases.size()) << built.result.message;
        for (std::size_t i = 0; i < phases.size(); ++i) {
          EXPECT_EQ(FirstDifference(built.frames[i], letters, PlainFill(front, back, leaf, scroll == 1, phases[i]),
                                    kBackground),
                    "")
              << "leaf " << leaf << " scroll " << scroll << " frame " << i << " of " << frames;
        }
      }
    }
  }
}

TEST(Fuse, RestsInTheMiddleAndAtItsEnd) {
  const struct {
    int frames;
    std::size_t kept;
    std::set<std::size_t> resting;
  } rows[] = {{2, 2, {1}}, {3, 2, {1}}, {4, 4, {2, 3}}, {7, 6, {3, 5}}, {8, 8, {4, 7}}};
  for (const auto& row : rows) {
    const Built built = BuildWith("fuse", {{kFrames, std::to_string(row.frames)}});
    EXPECT_EQ(BadSchedule(built, row.kept, row.resting, row.kept, row.frames), "") << row.frames;
  }
  EXPECT_EQ(BuildWith("fuse", {{kFrames, "1001"}}).frames.size(), 1000u);
}

TEST(Fuse, BothFillsStandAloneAtTheEndsAndTogetherInTheSample) {
  Settings settings = kBare;
  settings.emplace_back(kFrames, "8");
  const Built built = BuildWith("fuse", settings);
  const Built sample = SampleWith("fuse", settings);
  const Levels letters = LevelsOf({{"MainPadding", "2"}}, false);
  const PackedDib front = FillOf(kFront, letters.width, letters.height);
  const PackedDib back = FillOf(kBack, letters.width, letters.height);
  ASSERT_EQ(built.frames.size(), 8u);
  EXPECT_EQ(FirstDifference(built.frames[0], letters, back, kBackground), "");
  EXPECT_EQ(FirstDifference(built.frames[4], letters, front, kBackground), "");
  EXPECT_EQ(FirstDifference(built.frames[7], letters, back, kBackground), "");
  ASSERT_EQ(sample.frames.size(), 1u);
  EXPECT_EQ(FirstDifference(sample.frames[0], letters, PlainFill(front, back, 2, false, 0.5), kBackground), "");
}

}  // namespace
}  // namespace glyphmotion::test
