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

// Without smoothing and softness the rest of the picture is the plain text, pixel for pixel.
TEST(Shapes, BreakerChangesOnlyTheSquareUnderTheWave) {
  const Settings bare = {{"@soft", "0"}, {"@shadowenable", "0"}, {"@outlineenable", "0"}};
  Settings still = bare;
  still.emplace_back("22", "0");
  const BuiltFrame plain = BuildText("simple", "MMMMMMMMMM", still).frames.at(0);
  const int width = plain.width, side = plain.height;
  for (const bool fromLeft : {false, true}) {
    Settings settings = bare;
    settings.insert(settings.end(), {{"@frames", "9"}, {"@smooth", "0"}, {"@scroll", fromLeft ? "1" : "0"}});
    const Built built = BuildText("breaker", "MMMMMMMMMM", settings);
    ASSERT_EQ(built.frames.size(), 9u) << built.result.message;
    for (int i = 0; i < 8; ++i) {
      const int travelled = static_cast<int>((width - side) * (i / 8.0));
      const int left = fromLeft ? travelled : width - travelled - side - 1;
      const auto [first, last] = DifferingColumns(plain, built.frames[static_cast<std::size_t>(i)]);
      EXPECT_GE(first, left) << i;
      EXPECT_LT(last, left + side) << i;
      EXPECT_GE(last - first, side / 2) << i << ": the wave is there";
    }
  }
  // Higher than wide: the window runs the other way and hangs over both sides.
  for (const char* direction : {"0", "1"})
    EXPECT_EQ(
        BuildText("breaker", "i", {{"@frames", "6"}, {"MainFontSize", "60"}, {"@scroll", direction}}).frames.size(),
        6u);
}

// Sharp and without a shadow, what has not been swallowed is the plain text.
TEST(Shapes, SingularityWidensItsStripFromOneEnd) {
  const Settings bare = {{"@soft", "0"}, {"@shadowenable", "0"}};
  Settings still = bare;
  still.emplace_back("22", "0");
  const BuiltFrame plain = BuildWith("simple", still).frames.at(0);
  for (const bool fromLeft : {false, true}) {
    Settings settings = bare;
    settings.insert(settings.end(), {{"@frames", "32"}, {"@scroll", fromLeft ? "1" : "0"}});
    const Built built = BuildWith("singularity", settings);
    ASSERT_EQ(built.frames.size(), 33u);
    for (int i = 0; i <= 16; ++i) {
      const auto [first, last] = DifferingColumns(plain, built.frames[static_cast<std::size_t>(i)]);
      // The outline's mask is four columns wider and one to the right.
      const int strip = static_cast<int>((plain.width + 4) * (i / 16.0));
      EXPECT_TRUE(first == -1 || strip >= 4) << "too narrow to turn: " << i;
      EXPECT_TRUE(first == -1 || (fromLeft ? last < strip : first >= plain.width + 4 - strip - 5)) << i;
    }
    EXPECT_FALSE(built.frames[16] == plain);
  }
}

TEST(Shapes, EventHorizonSpreadsFromNothingInTheMiddle) {
  const Built plain =
      BuildText("event-horizon", "HHHHHHHHHHHHHHHH", {{"@frames", "32"}, {"@alternate", "0"}, {"@shadowenable", "0"}});
  ASSERT_EQ(plain.frames.size(), 33u) << plain.result.message;
  EXPECT_TRUE(IsBlank(plain.frames[0]));
  int before = 0;
  for (std::size_t i = 1; i < 8; ++i) {
    const auto [first, last] = DifferingColumns(plain.frames[i], plain.frames[0]);
    EXPECT_GT(last - first, before) << i;
    EXPECT_NEAR(first + last, plain.frames[0].width, 8) << i;
    EXPECT_TRUE(i > 1 || last - first < plain.frames[0].width / 4);
    before = last - first;
  }
  // The full text is the same whatever rises to it, and a run below four frames has nothing else.
  const Built only = BuildWith("event-horizon", {{"@frames", "3"}});
  EXPECT_EQ(BuildWith("event-horizon", {{"@frames", "8"}, {"@radius", "32"}}).frames.at(4), only.frames.at(0));
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

struct Bump {
  const char *effect, *frames, *length;
};
constexpr Bump kBumps[] = {{"ripple", "Style001Frames", "Style001Wavesize"},
                           {"pinch", "Style003Frames", "Style003Wavesize"}};

TEST(Shapes, OnlyTheColumnsUnderAPassingBumpMove) {
  for (const Bump& bump : kBumps) {
    const Built built = BuildText(bump.effect, "HHHHHHHHHHHHHHHH", {{bump.frames, "40"}, {bump.length, "20"}});
    ASSERT_GE(built.frames.size(), 20u) << built.result.message;
    const int width = built.frames[0].width;
    for (int k = 0; k < 19; ++k) {
      const auto [first, last] = DifferingColumns(built.frames[static_cast<std::size_t>(k)], built.frames.back());
      const int start = width * k / 20, end = start + width / 5;
      EXPECT_GE(first, start - 4) << bump.effect << k;
      EXPECT_LE(last, end + 4) << bump.effect << k;
      EXPECT_GT(last - first, std::min(end, width) - start - 14) << bump.effect << k;
    }
    EXPECT_EQ(BuildWith(bump.effect, {{bump.frames, "4"}, {bump.length, "10"}}).frames.back(),
              BuildWith(bump.effect, {{bump.frames, "30"}, {bump.length, "50"}}).frames.back())
        << bump.effect << ": at rest there is no bump";
  }
}

TEST(Shapes, RippleMakesRoomForItsBumpAndPinchDoesNot) {
  const struct {
    const char* effect;
    Settings settings;
    int height;
  } rows[] = {{"ripple", {{"Style001Range", "8"}, {"Style001OutlineEnable", "0"}}, 16 + 2},
              {"ripple", {{"Style001Range", "60"}, {"Style001OutlineEnable", "1"}}, 16 + 15 + 2},
              {"ripple", {{"Style001Range", "11"}, {"MainPadding", "5"}}, 16 + 2 + 10},
              {"pinch", {{"Style003Waveheight", "99"}, {"Style003OutlineEnable", "1"}}, 16 + 2}};
  for (const auto& row : rows) EXPECT_EQ(SampleWith(row.effect, row.settings).frames.at(0).height, row.height);
}

// A fill of one colour stays outside the bump's empty corners, which are black in a pattern.
TEST(Shapes, PatternsRideTheBumpAndFlatColoursStay) {
  const auto darkens = [](const char* fill) {
    int dark = 0;
    const Built built =
        BuildWith("pinch", {{"@frames", "8"}, {"@outlineenable", "0"}, {"Style003Waveheight", "70"}, {"221", fill}});
    for (const BuiltFrame& frame : built.frames) {
      for (int i = 0; i < frame.width * frame.height; ++i)
        dark += (PixelOf(frame, i % frame.width, i / frame.width) & 0xFF) != 0xFF;
    }
    return dark > 0;
  };
  EXPECT_FALSE(darkens("#ff0000"));
  EXPECT_TRUE(darkens("gradient:#ff0000-#ff0000"));
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
