// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/effect_checks.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style012Frames";

TEST(Elastic, StretchesHoldsThePeakAndSettlesBack) {
  for (int frames : {2, 3, 10, 64}) {
    const Built built = BuildWith(
        "elastic", {{kFrames, std::to_string(frames)}, {"575", "gradient:#ff0000-#0000ff"}, {"Style012Energy", "100"}});
    const int half = frames / 2, total = frames % 2 ? frames : frames + 1;
    std::vector<int> delays(static_cast<std::size_t>(2 * half + 2), 4);
    delays.back() = 104;
    ASSERT_EQ(built.Delays(), delays) << frames << " " << built.result.message;
    std::vector<std::pair<std::int64_t, std::int64_t>> progress;
    for (int i = 0; i <= half; ++i) progress.emplace_back(i, total);
    for (int j = 0; j < half; ++j) progress.emplace_back(half + j, total);
    EXPECT_EQ(built.progress, progress) << frames;
    const auto peak = static_cast<std::size_t>(half);
    EXPECT_EQ(built.frames[peak], built.frames[peak + 1]) << "held for two frames";
    EXPECT_EQ(built.frames.front(), built.frames.back());
    EXPECT_FALSE(built.frames.front() == built.frames[peak]);
  }
}

}  // namespace
}  // namespace glyphmotion::test
