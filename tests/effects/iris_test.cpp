// SPDX-License-Identifier: MIT
// Iris and Background Iris, their mask and their cycle.
#include <gtest/gtest.h>

#include <array>

#include "effects/effect_checks.h"

namespace glyphmotion::test {
namespace {

struct Effect {
  const char *name, *stem, *enable;
  std::array<int, 5> materials, irises;
  std::string Key(const std::string& rest) const { return stem + rest; }
};
const Effect kIrisEffects[] = {
    {"iris", "Style002", "FillEnable", {158, 160, 162, 165, 168}, {191, 195, 199, 203, 207}},
    {"background-iris", "Style013", "BackgroundEnable", {609, 611, 613, 616, 619}, {642, 646, 650, 654, 658}}};

TEST(Iris, TheCycleRunsOverTheEnabledMaterials) {
  for (const Effect& effect : kIrisEffects) {
    for (int enables : {0, 1, 2, 5, 6, 7}) {
      for (int frames : {2, 3, 5, 65}) {
        Settings settings = {{effect.Key("Frames"), std::to_string(frames)}};
        for (int i = 0; i < 3; ++i) {
          settings.emplace_back(effect.Key(effect.enable) + std::to_string(3 + i), enables >> i & 1 ? "1" : "0");
        }
        const Built built = BuildWith(effect.name, settings);
        const int transitions = 2 + (enables & 1) + (enables >> 1 & 1) + (enables >> 2 & 1);
        const int each = frames / transitions;
        ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(each * transitions)) << built.result.message;
        EXPECT_EQ(built.result.status == RenderStatus::Done, each > 0) << "a run without frames is an error";
        for (int i = 0; i < each * transitions; ++i) {
          const auto at = static_cast<std::size_t>(i);
          EXPECT_EQ(built.frames[at].delay, i % each ? 4 : 104) << effect.name << frames << " " << i;
          EXPECT_EQ(built.progress[at], std::make_pair(std::int64_t{i}, std::int64_t{frames}));
        }
      }
    }
  }
}

TEST(Iris, ATransitionStartsFromTheMaterialReachedLast) {
  for (const Effect& effect : kIrisEffects) {
    const std::string first = std::to_string(effect.materials[0]);
    // The third is off: 1, 2, 4, 5.
    const int order[] = {0, 1, 3, 4};
    const char* const colours[] = {"#102030", "#405060", "#700000", "#00a0b0", "#f0e0d0"};
    Settings settings = {{effect.Key("Frames"), "12"}, {effect.Key(effect.enable) + "3", "0"}};
    for (std::size_t i = 0; i < 5; ++i) settings.emplace_back(std::to_string(effect.materials[i]), colours[i]);
    const Built built = BuildWith(effect.name, settings);
    ASSERT_EQ(built.frames.size(), 12u) << built.result.message;
    for (std::size_t t = 0; t < 4; ++t) {
      const Built alone = BuildWith(effect.name, {{effect.Key("Frames"), "5"}, {first, colours[order[t]]}});
      ASSERT_FALSE(alone.frames.empty());
      EXPECT_EQ(built.frames[3 * t], alone.frames[0]) << effect.name << " " << t;
    }
  }
}

TEST(Iris, AMaterialOpensThroughTheIrisOfItsNumber) {
  // Two materials: the second opens through iris 2, the way back to the first through iris 1, as in the sample.
  for (const Effect& effect : kIrisEffects) {
    Settings settings = {{effect.Key("Frames"), "4"}};
    for (int i = 3; i <= 5; ++i) settings.emplace_back(effect.Key(effect.enable) + std::to_string(i), "0");
    const auto with = [&](const std::string& rest, const char* value) {
      Settings all = settings;
      all.emplace_back(effect.Key(rest), value);
      return BuildWith(effect.name, all);
    };
    const Built plain = BuildWith(effect.name, settings);
    ASSERT_EQ(plain.frames.size(), 4u);
    for (const auto& [one, two] : {std::pair(with("IrisStyle1", "4"), with("IrisStyle2", "4")),
                                   std::pair(with("IrisSize1", "7"), with("IrisSize2", "7"))}) {
      EXPECT_EQ(one.frames.at(1), plain.frames[1]);
      EXPECT_FALSE(one.frames.at(3) == plain.frames[3]);
      EXPECT_FALSE(two.frames.at(1) == plain.frames[1]);
      EXPECT_EQ(two.frames.at(3), plain.frames[3]);
    }
  }
}

TEST(Iris, BackgroundsStandInAlphaRunsToo) {
  const Built built =
      BuildWith("background-iris", {{"Style013Frames", "5"}, {"609", "#123456"}, {"62", "1"}, {"63", "1"}});
  ASSERT_EQ(built.frames.size(), 5u) << built.result.message;
  EXPECT_EQ(built.frames[0].bits, 32);
  EXPECT_EQ(PixelOf(built.frames[0], 0, 0), 0x563412u);
}

}  // namespace
}  // namespace glyphmotion::test
