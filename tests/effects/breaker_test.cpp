// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/effect_checks.h"
#include "effects/twist.h"
#include "image/filters.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

const std::string kFrames = "Style014Frames", kScroll = "Style014Scroll";

Job LongJob(const std::string& effect, const Settings& settings) {
  Job job = SmallJob(effect, settings);
  job.text = "MMMMMMMMMM";
  return job;
}

TEST(Breaker, TheRunEndsOnTheFirstPictureAndOnlyThatRests) {
  for (const int frames : {2, 3, 9}) {
    const Built built = BuildWith("breaker", {{kFrames, std::to_string(frames)}});
    const auto count = static_cast<std::size_t>(frames);
    ASSERT_EQ(BadSchedule(built, count, {count - 1}, count - 1, frames - 1), "");
    EXPECT_EQ(built.frames.front(), built.frames.back());
    if (frames % 2) {
      EXPECT_TRUE(built.frames[built.frames.size() / 2] == SampleWith("breaker").frames.at(0));
    }
  }
}

// Without smoothing and softness the rest of the picture is the plain text, pixel for pixel.
TEST(Breaker, OnlyTheSquareUnderTheWaveChanges) {
  const Built plain = RunJob(LongJob(
      "simple", {{"22", "0"}, {"Style000Soft", "0"}, {"Style000ShadowEnable", "0"}, {"Style000OutlineEnable", "0"}}));
  ASSERT_EQ(plain.frames.size(), 1u);
  const int width = plain.frames[0].width, side = plain.frames[0].height;
  for (const bool fromLeft : {false, true}) {
    const Built built = RunJob(LongJob("breaker", {{kFrames, "9"},
                                                   {kScroll, fromLeft ? "1" : "0"},
                                                   {"Style014Soft", "0"},
                                                   {"Style014Smooth", "0"},
                                                   {"Style014ShadowEnable", "0"},
                                                   {"Style014OutlineEnable", "0"}}));
    ASSERT_EQ(built.frames.size(), 9u);
    for (int i = 0; i < 8; ++i) {
      const int travelled = static_cast<int>((width - side) * (i / 8.0));
      const int left = fromLeft ? travelled : width - travelled - side - 1;
      const auto [first, last] = DifferingColumns(plain.frames[0], built.frames[static_cast<std::size_t>(i)]);
      EXPECT_GE(first, left) << i;
      EXPECT_LT(last, left + side) << i;
      EXPECT_GE(last - first, side / 2) << i << ": the wave is there";
    }
  }
}

TEST(Breaker, SmoothWavesAreTurnedAtTwiceTheSizeAndPasted) {
  const PackedDib letters = RestingLetters(), doubled = ResampleByPercent(letters, 200, 200);
  const Built built = BuildWith("breaker", OnlyLetters("breaker", {{kFrames, "6"}, {kScroll, "1"}}));
  ASSERT_EQ(built.frames.size(), 6u);
  const int degrees[] = {0,   288, 576,
                         576, 287, 0};  // 720 times twice 0, 1/5, 2/5; 0.5 - (0.8 - 0.5) is a hair less than 1/5
  for (int i = 0; i < 6; ++i) {
    TwistTables tables;
    const PackedDib whole = DuplicateDib(doubled);
    const DibView view(whole);
    const int side = view.Height(), left = static_cast<int>((view.Width() - side) * (i < 5 ? i / 5.0 : 0.0));
    const PackedDib square = Twist(CropDib(doubled, {left, 0, left + side, side}), -degrees[i], tables);
    CopyRegion(view, left, 0, DibView(square), 0, 0, side, side);
    EXPECT_EQ(Difference(LettersOf(built.frames[static_cast<std::size_t>(i)]), ResampleByPercent(whole, 50, 50)), "")
        << i;
  }
}

TEST(Breaker, NarrowTextsDoNoHarm) {
  // Higher than wide: the window runs the other way and hangs over both sides.
  Job job = SmallJob("breaker", {{kFrames, "6"}, {"MainFontSize", "60"}});
  job.text = "i";
  for (const char* direction : {"0", "1"}) {
    job.settings.emplace_back(kScroll, direction);
    EXPECT_EQ(RunJob(job).frames.size(), 6u);
  }
}

}  // namespace
}  // namespace glyphmotion::test
