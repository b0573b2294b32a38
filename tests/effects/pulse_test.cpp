// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/bulge.h"
#include "effects/effect_checks.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

const std::string kFrames = "Style017Frames", kIntensity = "Style017Intensity";

TEST(Pulse, TheRunSwellsSinksAndRestsOnThePlainText) {
  const BuiltFrame plain = BuildWith("simple", {{"22", "0"}}).frames.at(0);
  for (const int frames : {2, 3, 24, 25}) {
    const Built built = BuildWith("pulse", {{kFrames, std::to_string(frames)}});
    const auto half = static_cast<std::size_t>(frames / 2);
    ASSERT_EQ(BadSchedule(built, 2 * half + 1, {2 * half}, 2 * half, frames), "");
    for (std::size_t i = 0; i < 2 * half; ++i) EXPECT_EQ(built.frames[i], built.frames[2 * half - 1 - i]);
    EXPECT_EQ(built.frames[0], plain);
    EXPECT_EQ(built.frames[2 * half], plain) << "the plain text stands for two frames";
    EXPECT_EQ(built.Distinct(), half);
  }
}

TEST(Pulse, StrengthIsWholePercentAndTheSampleIsTheFullBulge) {
  // 10 percent in 100 steps: ten steps share a picture, the first ten being plain.
  const Built weak = BuildWith("pulse", {{kFrames, "200"}, {kIntensity, "10"}});
  ASSERT_EQ(weak.frames.size(), 201u);
  EXPECT_EQ(weak.frames[9], weak.frames[0]);
  EXPECT_FALSE(weak.frames[11] == weak.frames[0]);
  EXPECT_LE(weak.Distinct(), 11u);
  const BuiltFrame full = SampleWith("pulse").frames.at(0),
                   part = SampleWith("pulse", {{kIntensity, "50"}}).frames.at(0);
  EXPECT_FALSE(full == part);
  const Built half = BuildWith("pulse", {{kFrames, "4"}});  // 0, -50 percent, and back
  EXPECT_EQ(half.frames.at(1), part);
}

TEST(Pulse, LettersAndFillsBulgeTogether) {
  const std::string gradient = "gradient:#ff0000-#0000ff,rotation=30";
  const Built bare = BuildWith("simple", OnlyLetters("simple", {{"22", "0"}, {"104", gradient}, {"108", "0"}}));
  const PackedDib colours = DibOf(bare.frames.at(0)), letters = RestingLetters();
  Settings filled = OnlyLetters("pulse", {{kFrames, "8"}});
  const Built black = BuildWith("pulse", filled);
  filled.emplace_back("784", gradient);
  const Built built = BuildWith("pulse", filled);
  ASSERT_EQ(built.frames.size(), 9u) << built.result.message;
  const int percent[] = {0, -25, -50, -75, -75, -50, -25, 0, 0};
  for (std::size_t i = 0; i < 9; ++i) {
    BulgeTables tables;
    EXPECT_EQ(Difference(LettersOf(black.frames[i]), BulgeBitmap(letters, percent[i], tables)), "") << i;
    const PackedDib bulged = BulgeBitmap(colours, percent[i], tables);
    const DibView expected(bulged);
    for (int y = 0; y < built.frames[i].height; ++y) {
      for (int x = 0; x < built.frames[i].width; ++x) {
        if (PixelOf(black.frames[i], x, y)) continue;
        ASSERT_EQ(PixelOf(built.frames[i], x, y), expected.GetPixel(x, y)) << i << ": " << x << "," << y;
      }
    }
  }
}

}  // namespace
}  // namespace glyphmotion::test
