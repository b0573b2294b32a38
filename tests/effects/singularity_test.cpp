// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "effects/effect_checks.h"
#include "effects/twist.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

const std::string kFrames = "Style020Frames", kScroll = "Style020Scroll";

TEST(Singularity, TheRunGrowsPeaksOnceRecedesAndRests) {
  for (const int frames : {2, 3, 8, 13}) {
    const Built built = BuildWith("singularity", {{kFrames, std::to_string(frames)}});
    const auto half = static_cast<std::size_t>(frames / 2);
    ASSERT_EQ(BadSchedule(built, 2 * half + 1, {2 * half}, 2 * half, frames), "");
    for (std::size_t i = 0; i < half; ++i) {
      EXPECT_EQ(built.frames[i], built.frames[2 * half - i]) << frames << " " << i;
      EXPECT_FALSE(built.frames[i] == built.frames[half]) << "the peak appears once";
    }
    if (half % 2 == 0) {
      EXPECT_TRUE(built.frames[half / 2] == SampleWith("singularity").frames.at(0)) << frames;
    }
  }
}

// Sharp and without a shadow, what has not been swallowed is the plain text.
TEST(Singularity, TheStripWidensFromItsEndAndTheRestStaysPlain) {
  const Built simple = BuildWith("simple", {{"22", "0"}, {"Style000Soft", "0"}, {"Style000ShadowEnable", "0"}});
  const BuiltFrame& plain = simple.frames.at(0);
  for (const char* smooth : {"0", "1"}) {
    for (const bool fromLeft : {false, true}) {
      const Built built = BuildWith("singularity", {{kFrames, "32"},
                                                    {kScroll, fromLeft ? "1" : "0"},
                                                    {"Style020Soft", "0"},
                                                    {"Style020Smooth", smooth},
                                                    {"Style020ShadowEnable", "0"}});
      ASSERT_EQ(built.frames.size(), 33u);
      for (int i = 0; i <= 16; ++i) {
        const BuiltFrame& frame = built.frames[static_cast<std::size_t>(i)];
        const auto [first, last] = DifferingColumns(plain, frame);
        // The outline's mask is four columns wider and one to the right.
        const int strip = static_cast<int>((plain.width + 4) * (i / 16.0));
        if (strip < 4) {
          EXPECT_EQ(first, -1) << "too narrow to turn";
        }
        if (first < 0) continue;
        if (fromLeft) {
          EXPECT_LT(last, strip) << i;
        } else {
          EXPECT_GE(first, plain.width + 4 - strip - 5) << i;
        }
      }
      EXPECT_FALSE(built.frames[16] == plain);
    }
  }
}

TEST(Singularity, LettersAndTexturedFillsTurnTogether) {
  const Job::Setting large = {"MainFontSize", "60"};
  const std::string gradient = "gradient:#ff0000-#0000ff,rotation=30";
  // The gradient itself: a background behind letters of no opacity.
  const Built bare = BuildWith("simple", OnlyLetters("simple", {{"22", "0"}, {"104", gradient}, {"108", "0"}, large}));
  const PackedDib colours = DibOf(bare.frames.at(0)), letters = RestingLetters({large});
  for (const bool fromLeft : {false, true}) {
    const Settings peak = {{kFrames, "2"}, {kScroll, fromLeft ? "1" : "0"}, large};
    Settings filled = OnlyLetters("singularity", peak);
    filled.emplace_back("924", gradient);
    const BuiltFrame black = BuildWith("singularity", OnlyLetters("singularity", peak)).frames.at(1);
    const BuiltFrame frame = BuildWith("singularity", filled).frames.at(1);
    TwistTables tables;
    const int angle = fromLeft ? 224 : -224;
    EXPECT_EQ(Difference(LettersOf(black), TwistMask(letters, angle, true, tables)), "");
    const PackedDib turned = TwistMask(colours, angle, true, tables);
    const DibView expected(turned), straight(colours);
    int inside = 0, moved = 0;
    for (int y = 0; y < frame.height; ++y) {
      for (int x = 0; x < frame.width; ++x) {
        if (PixelOf(black, x, y) != 0) continue;  // not all letter
        ++inside;
        moved += expected.GetPixel(x, y) != straight.GetPixel(x, y);
        ASSERT_EQ(PixelOf(frame, x, y), expected.GetPixel(x, y)) << x << "," << y;
      }
    }
    EXPECT_GT(inside, 20);
    EXPECT_GT(moved, inside / 2);
  }
}

}  // namespace
}  // namespace glyphmotion::test
