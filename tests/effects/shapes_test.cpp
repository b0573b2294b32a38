// SPDX-License-Identifier: MIT
// What effects do to text and fills, as properties of whole frames; checksums/options.txt holds their pixels.
#include <gtest/gtest.h>

#include "effects/effect_checks.h"
#include "materials/material.h"

namespace glyphmotion::test {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;
const std::string kGradient = "gradient:#ff0000-#0000ff,rotation=30";

bool IsBlank(const BuiltFrame& frame) { return PixelsOf(frame, kWhite) == frame.width * frame.height; }

Built BuildText(const std::string& effect, const std::string& text, const Settings& settings) {
  Job job = SmallJob(effect, settings);
  job.text = text;
  return RunJob(job);
}

TEST(Shapes, NebulaEndsOnTheBareBackground) {
  for (const char* frames : {"2", "3", "16"}) {
    const Built built = BuildWith("nebula", {{"@frames", frames}});
    EXPECT_TRUE(IsBlank(built.frames.back())) << frames;
    EXPECT_FALSE(IsBlank(built.frames[built.frames.size() - 2])) << frames;
  }
  const Built alpha = BuildWith("nebula", {{"@frames", "3"}, {"62", "1"}});
  ASSERT_EQ(alpha.frames.size(), 4u);
  EXPECT_EQ(alpha.frames[0].bits, 32);
  EXPECT_EQ(alpha.frames[3].bits, 24) << "the bare frame has no alpha plane";
}

TEST(Shapes, FuseShowsEachFillAloneWhenItRests) {
  const auto frames = [](const std::string& front, const std::string& back) {
    return BuildWith("fuse", {{"@frames", "8"}, {"459", front}, {"485", back}}).frames;
  };
  const auto both = frames("#ff0000", kGradient), front = frames("#ff0000", "#ff0000"),
             back = frames(kGradient, kGradient);
  ASSERT_EQ(both.size(), 8u);
  EXPECT_EQ(both[4], front.at(4));
  EXPECT_EQ(both[0], back.at(0));
  EXPECT_EQ(both[7], back.at(7));
  EXPECT_FALSE(both[2] == front[2] || both[2] == back[2]);
}

TEST(Shapes, LaserAlwaysShowsABeamButNotOnAMissingOutline) {
  const auto frames = [](const char* onFill, const char* onOutline, const char* outline) {
    return BuildWith("laser", {{"@frames", "12"},
                               {"Style005FillEnable", onFill},
                               {"Style005OutEnable", onOutline},
                               {"Style005OutlineEnable", outline}});
  };
  EXPECT_EQ(frames("0", "0", "1").frames, frames("1", "0", "1").frames);
  EXPECT_GT(frames("0", "0", "1").Distinct(), 1u);
  EXPECT_EQ(frames("0", "1", "0").Distinct(), 1u);
}

TEST(Shapes, PulseIsWholePercent) {
  // 10 percent in 100 steps: ten steps share a picture, the first ten being plain.
  const Built weak = BuildWith("pulse", {{"@frames", "200"}, {"@intensity", "10"}});
  ASSERT_EQ(weak.frames.size(), 201u);
  EXPECT_EQ(weak.frames[9], weak.frames[0]);
  EXPECT_FALSE(weak.frames[11] == weak.frames[0]);
  EXPECT_LE(weak.Distinct(), 11u);
  EXPECT_EQ(BuildWith("pulse", {{"@frames", "4"}}).frames.at(1),
            SampleWith("pulse", {{"@intensity", "50"}}).frames.at(0));
}

TEST(Shapes, StarsKeepTheirBackgroundInAlphaRunsAndFitNarrowFrames) {
  const Settings alpha = {{"62", "1"}, {"63", "1"}, {"@frames", "2"}, {"MainPadding", "9"}};
  const BuiltFrame behind = BuildWith("background-hyperspace", alpha).frames.at(0);
  const BuiltFrame inside = BuildWith("hyperspace", alpha).frames.at(0);
  EXPECT_EQ(inside.bits, 32);
  EXPECT_GT(PixelsOf(inside, 0x7F7F7F), 20) << "the key colour";
  EXPECT_GT(PixelsOf(behind, 0), 20) << "the black background";
  for (const char* effect : {"hyperspace", "background-hyperspace"}) {
    const Built narrow = BuildText(
        effect, ".",
        {{"MainFontSize", "4"}, {"MainPadding", "1"}, {"@soft", "0"}, {"@shadowenable", "0"}, {"@outlineenable", "0"}});
    EXPECT_EQ(narrow.frames.size(), 96u) << narrow.result.message;
    EXPECT_LE(narrow.frames.at(0).width, 4) << "less than a star is thick";
  }
}

// A texture seeds the generator when it is rendered, also where its pixels are remembered: the noise after it is the
// same in every frame.
TEST(Shapes, ATextureFillFreezesTheGrainOfWhiteNoise) {
  for (const char* control : {"497", "521"}) {
    const Settings settings = {
        {"@frames", "4"}, {control, "texture:Marble"}, {"@interference", "0"}, {"@randomdelay", "0"}};
    EXPECT_EQ(BuildWith("white-noise", settings).Distinct(), 1u) << control;
  }
}

}  // namespace
}  // namespace glyphmotion::test
