// SPDX-License-Identifier: MIT
// Runs of each effect: how many frames, which of them rest, what they report, and which of them are equal.
#include <gtest/gtest.h>

#include "effects/effect_checks.h"

namespace glyphmotion::test {
namespace {

TEST(Schedules, FramesRestsAndProgressAreThoseOfTheEffect) {
  const struct {
    const char* effect;
    int asked;
    std::size_t frames;
    std::set<std::size_t> resting;
    std::size_t steps;
    std::int64_t total;
  } rows[] = {
      {"breaker", 2, 2, {1}, 1, 1},
      {"breaker", 9, 9, {8}, 8, 8},
      {"vortex", 2, 2, {1}, 1, 1},
      {"vortex", 33, 33, {32}, 32, 32},
      {"pulse", 2, 3, {2}, 2, 2},
      {"pulse", 3, 3, {2}, 2, 3},
      {"pulse", 24, 25, {24}, 24, 24},
      {"singularity", 3, 3, {2}, 2, 3},
      {"singularity", 8, 9, {8}, 8, 8},
      {"laser", 2, 2, {1}, 2, 2},
      {"laser", 17, 17, {16}, 17, 17},
      {"laser", 1000, 1000, {999}, 1000, 1000},
      {"ripple", 2, 1, {0}, 0, 0},
      {"ripple", 9, 4, {3}, 3, 3},
      {"ripple", 64, 32, {31}, 31, 31},
      {"pinch", 2, 2, {1}, 1, 1},
      {"pinch", 9, 5, {4}, 4, 4},
      {"pinch", 64, 33, {32}, 32, 32},
      {"fuse", 2, 2, {1}, 2, 2},
      {"fuse", 3, 2, {1}, 2, 3},
      {"fuse", 4, 4, {2, 3}, 4, 4},
      {"fuse", 7, 6, {3, 5}, 6, 7},
      {"fuse", 8, 8, {4, 7}, 8, 8},
      {"nebula", 2, 4, {1, 3}, 3, 3},
      {"nebula", 3, 4, {1, 3}, 3, 3},
      {"nebula", 16, 18, {8, 17}, 17, 17},
      {"cubist", 2, 2, {}, 2, 2},
      {"cubist", 17, 17, {}, 17, 17},
      {"gumdrops", 3, 3, {}, 3, 3},
      {"gumdrops", 130, 130, {}, 130, 130},
      {"hyperspace", 3, 3, {}, 3, 3},
      {"phasers-on-stun", 17, 17, {}, 17, 17},
      {"background-hyperspace", 17, 17, {}, 17, 17},
  };
  for (const auto& row : rows) {
    const Built built = BuildWith(row.effect, {{"@frames", std::to_string(row.asked)}});
    EXPECT_EQ(BadSchedule(built, row.frames, row.resting, row.steps, row.total), "") << row.effect << " " << row.asked;
  }
}

TEST(Schedules, RadarTurnsOnceWithoutARest) {
  const std::pair<int, std::size_t> rows[] = {{0, 6}, {7, 30}, {16, 360}, {17, 360}, {21, 72}, {33, 6}};
  for (const auto& [position, frames] : rows) {
    const Built built = BuildWith("radar", {{"@increment", std::to_string(position)}});
    EXPECT_EQ(BadSchedule(built, frames, {}, frames, static_cast<std::int64_t>(frames)), "") << position;
  }
  EXPECT_EQ(BuildWith("radar").frames.size(), 72u) << "the default increment is 5";
}

TEST(Schedules, EventHorizonRisesRestsAndRunsBackwards) {
  for (int frames : {2, 3, 4, 7, 8, 19, 64}) {
    const Built built = BuildWith("event-horizon", {{"@frames", std::to_string(frames)}});
    const std::size_t rising = static_cast<std::size_t>(frames / 4) * 2;
    std::vector<int> delays(2 * rising + 1, 4);
    delays[rising] = delays.back() = 104;
    EXPECT_EQ(built.Delays(), delays) << frames << " " << built.result.message;
    ASSERT_EQ(built.progress.size(), rising) << "none while the text falls";
    for (std::size_t i = 0; i < rising; ++i)
      EXPECT_EQ(built.progress[i], std::pair(static_cast<std::int64_t>(i) + 1, static_cast<std::int64_t>(frames / 2)));
  }
}

TEST(Schedules, RunsThatReturnShowTheirFramesTwice) {
  const struct {
    const char* effect;
    int asked;
    std::size_t last;  // frame i equals frame last - i
    std::size_t distinct;
  } rows[] = {
      {"vortex", 8, 7, 4},        {"pulse", 24, 23, 12},        {"pulse", 3, 1, 1},
      {"singularity", 13, 12, 7}, {"event-horizon", 19, 16, 8},
  };
  for (const auto& row : rows) {
    const Built built = BuildWith(row.effect, {{"@frames", std::to_string(row.asked)}});
    ASSERT_GT(built.frames.size(), row.last) << built.result.message;
    for (std::size_t i = 0; i <= row.last; ++i)
      EXPECT_EQ(built.frames[i], built.frames[row.last - i]) << row.effect << i;
    EXPECT_EQ(built.Distinct(), row.distinct) << row.effect;
  }
}

TEST(Schedules, TheSampleIsAFrameOfTheRun) {
  const struct {
    const char* effect;
    int asked;
    std::size_t frame;
  } rows[] = {{"breaker", 9, 4},         {"vortex", 33, 16},        {"singularity", 8, 2},
              {"cubist", 7, 6},          {"phasers-on-stun", 6, 3}, {"simple", 2, 0},
              {"phasers-on-stun", 9, 4}, {"hyperspace", 4, 3},      {"background-hyperspace", 4, 3}};
  for (const auto& row : rows) {
    const Settings settings = {{"@frames", std::to_string(row.asked)}};
    const Built built = BuildWith(row.effect, settings), sample = SampleWith(row.effect, settings);
    ASSERT_EQ(sample.frames.size(), 1u) << sample.result.message;
    EXPECT_EQ(built.frames.at(row.frame), sample.frames[0]) << row.effect;
  }
}

TEST(Schedules, TwoFramesOfPinchBeginWithTheBump) {
  const Built built = BuildWith("pinch", {{"@frames", "2"}, {"Style003Wavesize", "50"}});
  EXPECT_EQ(built.Distinct(), 2u) << built.result.message;
}

TEST(Schedules, OneSeedGivesOneRun) {
  for (const char* effect :
       {"cubist", "gumdrops", "hyperspace", "background-hyperspace", "phasers-on-stun", "white-noise", "nebula"}) {
    const auto build = [&](const char* seed) { return BuildWith(effect, {{"@frames", "5"}, {"@seed", seed}}); };
    const Built one = build("777"), same = build("777"), other = build("778");
    ASSERT_GE(one.frames.size(), 5u) << one.result.message;
    EXPECT_EQ(one.frames, same.frames) << effect;
    EXPECT_EQ(one.Delays(), same.Delays()) << effect;
    EXPECT_FALSE(one.frames[0] == other.frames.at(0)) << effect;
  }
}

TEST(Schedules, ARunThatMemoryCannotHoldIsRefused) {
  Job endless = SmallJob("gumdrops", {{"@frames", "32760"}, {"MainFontSize", "144"}});
  endless.text = std::string(200, 'W');
  const Built refused = RunJob(endless);
  EXPECT_EQ(refused.result.status, RenderStatus::Failed);
  EXPECT_NE(refused.result.message.find("does not fit"), std::string::npos) << refused.result.message;
}

}  // namespace
}  // namespace glyphmotion::test
