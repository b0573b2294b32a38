// SPDX-License-Identifier: MIT
// Ripple and Pinch.
#include <gtest/gtest.h>

#include "effects/option_ends.h"

namespace glyphmotion::test {
namespace {

struct Bump {
  const char* effect;
  const char *frames, *length, *strength, *outline;
  const char *fill, *background;  // controls
  bool restCounts;                // Pinch: the resting frame is one more than half the frames
};
const Bump kBumps[] = {
    {"ripple", "Style001Frames", "Style001Wavesize", "Style001Range", "Style001OutlineEnable", "135", "137", false},
    {"pinch", "Style003Frames", "Style003Wavesize", "Style003Waveheight", "Style003OutlineEnable", "221", "223", true}};

TEST(PassingBump, HalfTheFramesMoveAndTheLastOneRests) {
  for (const Bump& bump : kBumps) {
    for (int frames : {2, 3, 4, 9, 64}) {
      const Built built = BuildWith(bump.effect, {{bump.frames, std::to_string(frames)}});
      const auto steps = static_cast<std::size_t>(frames / 2 - (bump.restCounts ? 0 : 1));
      EXPECT_EQ(BadSchedule(built, steps + 1, {steps}, steps, static_cast<std::int64_t>(steps)), "")
          << bump.effect << " " << frames << ": the resting frame reports nothing";
    }
  }
}

TEST(PassingBump, OnlyTheColumnsUnderTheBumpMove) {
  for (const Bump& bump : kBumps) {
    Job job = SmallJob(bump.effect, {{bump.frames, "40"}, {bump.length, "20"}});
    job.text = "HHHHHHHHHHHHHHHH";
    const Built built = RunJob(job);
    ASSERT_GE(built.frames.size(), 20u) << built.result.message;
    const int width = built.frames[0].width;
    for (int k = 0; k < 19; ++k) {
      const auto [first, last] = DifferingColumns(built.frames[static_cast<std::size_t>(k)], built.frames.back());
      const int start = width * k / 20, end = start + width / 5;
      EXPECT_GE(first, start - 4) << bump.effect << k;
      EXPECT_LE(last, end + 4) << bump.effect << k;
      EXPECT_GT(last - first, std::min(end, width) - start - 14) << bump.effect << k;
    }
  }
}

// The frame at rest does not know the bump.
TEST(PassingBump, TheRestingFrameIsPlainText) {
  for (const Bump& bump : kBumps) {
    const Built narrow = BuildWith(bump.effect, {{bump.frames, "4"}, {bump.length, "10"}});
    const Built wide = BuildWith(bump.effect, {{bump.frames, "30"}, {bump.length, "50"}});
    ASSERT_FALSE(narrow.frames.empty() || wide.frames.empty());
    EXPECT_EQ(narrow.frames.back(), wide.frames.back()) << bump.effect;
    const Built sample = SampleWith(bump.effect);
    ASSERT_EQ(sample.frames.size(), 1u);
    EXPECT_FALSE(sample.frames[0] == wide.frames.back()) << "the sample shows the bump half way";
  }
}

TEST(PassingBump, RippleMakesRoomForItsBumpAndPinchDoesNot) {
  const auto height = [](const char* effect, const Settings& settings) {
    const Built sample = SampleWith(effect, settings);
    return sample.frames.empty() ? 0 : sample.frames[0].height;
  };
  EXPECT_EQ(height("ripple", {{"Style001Range", "8"}, {"Style001OutlineEnable", "0"}}), 16 + 2);
  EXPECT_EQ(height("ripple", {{"Style001Range", "60"}, {"Style001OutlineEnable", "1"}}), 16 + 15 + 2);
  EXPECT_EQ(height("ripple", {{"Style001Range", "11"}, {"MainPadding", "5"}}), 16 + 2 + 10);
  EXPECT_EQ(height("pinch", {{"Style003Waveheight", "99"}, {"Style003OutlineEnable", "1"}}), 16 + 2);
}

// Pixels of a red text on white: the red channel stays full unless something black has been mixed in.
bool HasDarkRed(const Built& built) {
  for (const BuiltFrame& frame : built.frames) {
    for (int y = 0; y < frame.height; ++y) {
      for (int x = 0; x < frame.width; ++x) {
        if ((PixelOf(frame, x, y) & 0xFF) != 0xFF) return true;
      }
    }
  }
  return false;
}

TEST(PassingBump, PatternsRideTheBumpAndFlatColoursStay) {
  const Settings base = {{"Style003Frames", "8"}, {"Style003OutlineEnable", "0"}, {"Style003Waveheight", "70"}};
  Settings solid = base, pattern = base;
  solid.emplace_back("221", "#ff0000");
  pattern.emplace_back("221", "gradient:#ff0000-#ff0000");
  EXPECT_FALSE(HasDarkRed(BuildWith("pinch", solid)));
  EXPECT_TRUE(HasDarkRed(BuildWith("pinch", pattern))) << "a squeezed pattern has black above and below";
}

}  // namespace
}  // namespace glyphmotion::test
