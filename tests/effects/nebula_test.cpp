// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/effect_checks.h"
#include "effects/scatter.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

const std::string kFrames = "Style004Frames", kSeed = "Style004Seed", kSize = "Style004Size",
                  kFade = "Style004Fadetext", kShadow = "Style004Scrambleshadow";

bool IsBare(const BuiltFrame& frame) {
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      if (PixelOf(frame, x, y) != 0xFFFFFF) return false;
    }
  }
  return true;
}

TEST(Nebula, TheCloudCondensesHoldsDissolvesAndLeavesTheBareBackground) {
  // The clear text stands where the plain effect has it, with half of the cloud's size as room around it.
  const BuiltFrame clear = BuildWith("simple", {{"22", "0"}, {"MainPadding", "16"}}).frames.at(0);
  for (const int wanted : {2, 3, 16, 1001}) {
    const Built built = BuildWith("nebula", {{kFrames, std::to_string(wanted)}});
    const int frames = std::min(wanted | 1, 2 * clear.height);
    // By the book: the first time the scatter would fall below nothing, the frame holds.
    double s = 100.0;
    int hold = -1;
    for (int i = 0; i < frames && hold < 0; ++i) {
      s -= 100.0 / (frames * 0.5);
      if (s < 0) hold = i;
    }
    const auto steps = static_cast<std::size_t>(frames);
    ASSERT_EQ(BadSchedule(built, steps + 1, {static_cast<std::size_t>(hold), steps}, steps, frames), "") << wanted;
    EXPECT_EQ(built.frames[static_cast<std::size_t>(hold)], clear) << wanted;
    EXPECT_TRUE(IsBare(built.frames.back()));
    EXPECT_FALSE(IsBare(built.frames[built.frames.size() - 2]) && wanted < 1000) << "text to the last but one";
  }
}

TEST(Nebula, LettersScatterByTheSineOfThePhase) {
  const PackedDib letters = RestingLetters({{"MainPadding", "16"}});
  const Built built = BuildWith("nebula", OnlyLetters("nebula", {{kFrames, "5"}, {kFade, "0"}}));
  ASSERT_EQ(built.frames.size(), 6u);
  const double phases[] = {0.6, 0.2, 0, 0.4, 0.8};
  for (std::size_t i = 0; i < 5; ++i) {
    ScatterTables tables;
    const int radius = static_cast<int>(std::sin(phases[i] * 1.5707963267948966) * 32);
    EXPECT_EQ(Difference(LettersOf(built.frames[i]), Scatter(letters, radius, 12385, tables)), "") << i;
  }
}

TEST(Nebula, OneSeedGivesOneCloud) {
  const Settings few = {{kFrames, "5"}};
  const Built one = BuildWith("nebula", few), again = BuildWith("nebula", few);
  const Built other = BuildWith("nebula", {{kFrames, "5"}, {kSeed, "12386"}});
  ASSERT_EQ(one.frames.size(), 6u);
  EXPECT_TRUE(one.frames == again.frames);
  EXPECT_FALSE(one.frames[0] == other.frames[0]);
  EXPECT_EQ(one.frames[2], other.frames[2]) << "the clear text has no cloud";
}

TEST(Nebula, FadingAndTheShadowFollowTheirBoxes) {
  const auto sample = [](const Settings& settings) { return SampleWith("nebula", settings).frames.at(0); };
  const BuiltFrame both = sample({}), sharp = sample({{kShadow, "0"}}), full = sample({{kFade, "0"}});
  EXPECT_FALSE(both == sharp);
  EXPECT_FALSE(both == full);
  // Without the shadow the box for it says nothing.
  EXPECT_EQ(sample({{"Style004ShadowEnable", "0"}, {kShadow, "0"}}), sample({{"Style004ShadowEnable", "0"}}));
}

TEST(Nebula, TheBareFrameHasNoAlphaPlane) {
  const Built built = BuildWith("nebula", {{kFrames, "3"}, {"62", "1"}});
  ASSERT_EQ(built.frames.size(), 4u);
  EXPECT_EQ(built.frames[0].bits, 32);
  EXPECT_EQ(built.frames[3].bits, 24);
}

}  // namespace
}  // namespace glyphmotion::test
