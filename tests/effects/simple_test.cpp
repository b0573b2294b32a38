// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/build_harness.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style000Frames";
constexpr const char* kScroll = "Style000Scroll";

// The schedule by the book: positions of the run, and which frames hold.
struct Expected {
  int frames;
  std::vector<int> holds;
};
Expected Schedule(int side, bool rising, int frames) {
  Expected expected{std::min(frames, 2 * side), {}};
  const double step = 2.0 * side / expected.frames;
  double p = rising ? -side : side;
  for (int i = 0; i < expected.frames; ++i) {
    const double before = p;
    p += rising ? step : -step;
    const bool holds = rising ? p >= 0 && before < 0 : p >= 0 && p - step < 0;
    if (holds || i == expected.frames - 1) expected.holds.push_back(i);
  }
  return expected;
}

TEST(Simple, EveryDirectionFollowsItsScheduleAndHoldsAtRest) {
  const Built still = BuildWith("simple", {{"22", "0"}});
  ASSERT_EQ(still.frames.size(), 1u) << still.result.message;
  EXPECT_EQ(still.Delays(), std::vector<int>{4}) << "no pause without animation";
  for (int direction : {0, 1, 2, 3}) {
    for (int frames : {2, 3, 17, 64}) {
      const Built built =
          BuildWith("simple", {{kFrames, std::to_string(frames)}, {kScroll, std::to_string(direction)}});
      const bool vertical = direction == 0 || direction == 3;
      const Expected expected =
          Schedule(vertical ? still.frames[0].height : still.frames[0].width, direction == 1 || direction == 3, frames);
      ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(expected.frames)) << direction << " " << frames;
      ASSERT_EQ(built.progress.size(), built.frames.size());
      for (int i = 0; i < expected.frames; ++i) {
        const bool holds = std::count(expected.holds.begin(), expected.holds.end(), i) > 0;
        EXPECT_EQ(built.frames[static_cast<std::size_t>(i)].delay, holds ? 104 : 4)
            << direction << " " << frames << " " << i;
        EXPECT_EQ(built.progress[static_cast<std::size_t>(i)],
                  std::make_pair(std::int64_t{i}, std::int64_t{expected.frames}));
      }
    }
  }
}

}  // namespace
}  // namespace glyphmotion::test
