// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/effect_checks.h"
#include "effects/twist.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

const std::string kFrames = "Style008Frames", kScroll = "Style008Scroll", kRotate = "Style008Rotate";

TEST(Vortex, TheRunClimbsFallsBackAndRestsOnThePlainText) {
  for (const int frames : {2, 3, 8, 33}) {
    const Built built = BuildWith("vortex", {{kFrames, std::to_string(frames)}});
    const auto count = static_cast<std::size_t>(frames);
    ASSERT_EQ(BadSchedule(built, count, {count - 1}, count - 1, frames - 1), "") << "the last frame reports nothing";
    EXPECT_EQ(built.frames.front(), built.frames.back());
    if (frames % 2) {
      EXPECT_TRUE(built.frames[built.frames.size() / 2] == SampleWith("vortex").frames.at(0)) << frames;
    }
    EXPECT_LE(built.Distinct(), static_cast<std::size_t>(frames / 2 + 3)) << "half of the run comes back";
  }
}

TEST(Vortex, LettersTurnByTheWholeDegreesOfTheirPhase) {
  const PackedDib letters = RestingLetters();
  for (const bool smooth : {false, true}) {
    for (const bool clockwise : {false, true}) {
      const Built built = BuildWith("vortex", OnlyLetters("vortex", {{kFrames, "8"},
                                                                     {kRotate, "500"},
                                                                     {kScroll, clockwise ? "0" : "1"},
                                                                     {"Style008Smooth", smooth ? "1" : "0"}}));
      ASSERT_EQ(built.frames.size(), 8u);
      const int degrees[] = {0, 142, 285, 428, 428, 285, 142, 0};  // 500 times twice 0, 1/7, 2/7, 3/7
      for (std::size_t i = 0; i < 8; ++i) {
        TwistTables tables;
        const PackedDib turned = TwistMask(letters, clockwise ? degrees[i] : -degrees[i], smooth, tables);
        EXPECT_EQ(Difference(LettersOf(built.frames[i]), turned), "") << i << smooth << clockwise;
      }
    }
  }
}

TEST(Vortex, EvenTheUntwistedTextDriftsInsideTheDisc) {
  const Built simple = BuildWith("simple", {{"22", "0"}}), plain = BuildWith("vortex", {{kFrames, "2"}});
  ASSERT_EQ(plain.frames.size(), 2u);
  EXPECT_EQ(plain.frames[0], plain.frames[1]) << "two frames do not twist at all";
  EXPECT_EQ(plain.frames[0].width, simple.frames[0].width);
  EXPECT_EQ(plain.frames[0].height, simple.frames[0].height);
  EXPECT_FALSE(plain.frames[0] == simple.frames[0]);
}

TEST(Vortex, EveryOptionShows) {
  const BuiltFrame still = SampleWith("vortex").frames.at(0);
  const Settings changes = {{kScroll, "0"}, {kRotate, "720"}, {"Style008Smooth", "0"}, {"Style008ShadowEnable", "0"}};
  for (const auto& change : changes) EXPECT_FALSE(SampleWith("vortex", {change}).frames.at(0) == still) << change.first;
}

}  // namespace
}  // namespace glyphmotion::test
