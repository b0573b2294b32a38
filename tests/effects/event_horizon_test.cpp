// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/option_ends.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style016Frames";
constexpr const char* kAlternate = "Style016Alternate";

bool IsBlank(const BuiltFrame& frame) {
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      if (PixelOf(frame, x, y) != 0xFFFFFF) return false;
    }
  }
  return true;
}

TEST(EventHorizon, RisesRestsAndRunsBackwards) {
  for (int frames : {2, 3, 4, 7, 8, 19, 64}) {
    const Built built = BuildWith("event-horizon", {{kFrames, std::to_string(frames)}});
    const std::size_t rising = static_cast<std::size_t>(frames / 4) * 2;
    ASSERT_EQ(built.frames.size(), 2 * rising + 1) << frames << " " << built.result.message;
    std::vector<int> delays(2 * rising + 1, 4);
    delays[rising] = delays.back() = 104;
    EXPECT_EQ(built.Delays(), delays) << frames;
    ASSERT_EQ(built.progress.size(), rising) << "none while the text falls";
    for (std::size_t i = 0; i < rising; ++i) {
      EXPECT_EQ(built.progress[i],
                std::make_pair(static_cast<std::int64_t>(i) + 1, static_cast<std::int64_t>(frames / 2)));
      EXPECT_EQ(built.frames[i], built.frames[2 * rising - i]) << frames << " " << i;
    }
  }
}

TEST(EventHorizon, AColumnWithoutHeightIsBlank) {
  // The plain form spreads from nothing in the middle.
  Job job = SmallJob("event-horizon", {{kFrames, "32"}, {kAlternate, "0"}, {"Style016ShadowEnable", "0"}});
  job.text = "HHHHHHHHHHHHHHHH";
  const Built plain = RunJob(job);
  ASSERT_EQ(plain.frames.size(), 33u) << plain.result.message;
  EXPECT_TRUE(IsBlank(plain.frames[0]));
  int before = 0;
  for (std::size_t i = 1; i < 8; ++i) {
    const auto [first, last] = DifferingColumns(plain.frames[i], plain.frames[0]);
    EXPECT_GT(last - first, before) << i;
    EXPECT_NEAR(first + last, plain.frames[0].width, 8) << i;
    before = last - first;
  }
  const auto [first, last] = DifferingColumns(plain.frames[1], plain.frames[0]);
  EXPECT_LT(last - first, plain.frames[0].width / 4);
}

TEST(EventHorizon, TheSampleAndTheFullText) {
  const Built alternate = SampleWith("event-horizon"), plain = SampleWith("event-horizon", {{kAlternate, "0"}});
  ASSERT_EQ(alternate.frames.size() + plain.frames.size(), 2u);
  EXPECT_FALSE(alternate.frames[0] == plain.frames[0]);
  // The full text is the same whatever rises to it, and a run below four frames has nothing else.
  const Built only = BuildWith("event-horizon", {{kFrames, "3"}});
  const Built full = BuildWith("event-horizon", {{kFrames, "8"}, {"Style016Radius", "32"}});
  ASSERT_EQ(full.frames.size(), 9u);
  EXPECT_EQ(full.frames[4], only.frames.at(0));
  EXPECT_FALSE(IsBlank(only.frames[0]));
}

}  // namespace
}  // namespace glyphmotion::test
