// SPDX-License-Identifier: MIT
// Frames of a size of their own.
#include <gtest/gtest.h>

#include "effects/build_harness.h"

namespace glyphmotion::test {
namespace {

const Settings kNine = {{"MainFontSize", "9"}};

// Whether `inner` is what `outer` shows at (left, top), and nothing but `around` lies beside it.
bool Shows(const BuiltFrame& outer, const BuiltFrame& inner, int left, int top, std::uint32_t around) {
  for (int y = 0; y < outer.height; ++y) {
    for (int x = 0; x < outer.width; ++x) {
      const bool inside = x >= left && y >= top && x < left + inner.width && y < top + inner.height;
      if (PixelOf(outer, x, y) != (inside ? PixelOf(inner, x - left, y - top) : around)) return false;
    }
  }
  return true;
}

Job CanvasJob(const std::string& effect, int width, int height, const Settings& settings = {}) {
  Job job = SmallJob(effect, settings);
  job.width = width;
  job.height = height;
  return job;
}

Job Still(int width, int height, const Settings& settings = kNine) {
  Job job = CanvasJob("simple", width, height, settings);
  job.settings.emplace_back("22", "0");
  job.settings.emplace_back("@soft", "0");  // a soft shadow spreads on a canvas
  return job;
}

TEST(Canvas, EveryEffectHasItsUsualPictureInTheMiddle) {
  for (const std::string& effect : EffectNames()) {
    Settings settings = kNine;
    if (effect != "Radar")
      settings.emplace_back("@frames", effect == "Iris" || effect == "Background Iris" ? "10" : "8");
    if (effect == "Simple") settings.insert(settings.end(), {{"22", "0"}, {"@soft", "0"}});
    Job job = CanvasJob(effect, 0, 0, settings);
    job.fill = "gradient:#ff0000-#0000ff";
    job.background = "#ffeedd";
    const Built usual = RunJob(job);
    job.width = 301;
    job.height = 200;
    const Built built = RunJob(job);
    ASSERT_EQ(built.frames.size(), usual.frames.size()) << effect << " " << built.result.message;
    EXPECT_EQ(built.Delays(), usual.Delays()) << effect;
    EXPECT_EQ(built.result.notes, usual.result.notes) << effect;
    const bool background = effect.starts_with("Background");
    for (std::size_t i = 0; i < built.frames.size(); ++i) {
      const BuiltFrame &frame = built.frames[i], &inner = usual.frames[i];
      ASSERT_TRUE(frame.width == 301 && frame.height == 200) << effect;
      const int left = (301 - inner.width) / 2, top = (200 - inner.height) / 2;
      EXPECT_TRUE(background || Shows(frame, inner, left, top, 0xDDEEFF)) << effect << ", frame " << i;
    }
    EXPECT_GT(built.Distinct(), background ? 2u : 0u) << effect;
  }
}

TEST(Canvas, AlignmentPlacesTheTextAndOneSideMayFollowIt) {
  const BuiltFrame usual = RunJob(Still(0, 0)).frames.at(0);
  const int freeX = 100 - usual.width, freeY = 60 - usual.height;
  using Align = Job::Align;
  using VerticalAlign = Job::VerticalAlign;
  const struct {
    Align align;
    VerticalAlign vertical;
    int left, top;
  } rows[] = {{Align::Automatic, VerticalAlign::Middle, freeX / 2, freeY / 2},
              {Align::Justify, VerticalAlign::Middle, freeX / 2, freeY / 2},
              {Align::Left, VerticalAlign::Top, 0, 0},
              {Align::Centre, VerticalAlign::Bottom, freeX / 2, freeY},
              {Align::Right, VerticalAlign::Bottom, freeX, freeY}};
  for (const auto& row : rows) {
    Job job = Still(100, 60);
    job.align = row.align;
    job.verticalAlign = row.vertical;
    EXPECT_TRUE(Shows(RunJob(job).frames.at(0), usual, row.left, row.top, 0xFFFFFF)) << row.left << "," << row.top;
  }
  EXPECT_TRUE(Shows(RunJob(Still(100, 0)).frames.at(0), usual, freeX / 2, 0, 0xFFFFFF));
  EXPECT_TRUE(Shows(RunJob(Still(0, 60)).frames.at(0), usual, 0, freeY / 2, 0xFFFFFF));
}

TEST(Canvas, ATextThatIsTooLargeShrinksOrLosesItsEdges) {
  const Settings large = {{"MainFontSize", "90"}, {"MainPadding", "3"}};
  const Built fitted = RunJob(Still(120, 60, large));
  ASSERT_EQ(fitted.result.notes.size(), 1u) << fitted.result.message;
  int size = 0;
  for (int i = 90; i >= 4 && !size; --i) {
    const BuiltFrame frame =
        RunJob(Still(0, 0, {{"MainFontSize", std::to_string(i)}, {"MainPadding", "3"}})).frames.at(0);
    if (frame.width > 120 || frame.height > 60) continue;
    size = i;
    EXPECT_TRUE(Shows(fitted.frames.at(0), frame, (120 - frame.width) / 2, (60 - frame.height) / 2, 0xFFFFFF));
  }
  EXPECT_EQ(fitted.result.notes[0], "the text is set at size " + std::to_string(size) + ", which fits 120 x 60 pixels");

  Job job = CanvasJob("laser", 0, 0, {{"MainFontSize", "90"}, {"@frames", "2"}});
  const BuiltFrame whole = RunJob(job).frames.at(0);
  job.width = 120;
  job.height = 60;
  job.fit = Job::Fit::None;
  job.align = Job::Align::Left;
  job.verticalAlign = Job::VerticalAlign::Top;
  const Built cut = RunJob(job);
  ASSERT_EQ(cut.result.notes.size(), 1u);
  EXPECT_NE(cut.result.notes[0].find("edges are cut off"), std::string::npos);
  for (int i = 0; i < 120 * 60; ++i)
    ASSERT_EQ(PixelOf(cut.frames.at(0), i % 120, i / 120), PixelOf(whole, i % 120, i / 120)) << i;

  const Built none = RunJob(Still(5, 0, large));
  EXPECT_TRUE(none.frames.empty());
  EXPECT_NE(none.result.message.find("does not fit a width of 5 pixels at any size"), std::string::npos);
  EXPECT_EQ(RunJob(Still(16384, 0)).result.status, RenderStatus::BadJob);
  EXPECT_EQ(RunJob(Still(0, -1)).result.status, RenderStatus::BadJob);
}

TEST(Canvas, TheTextCrossesAllOfItAndTheBackgroundFillsIt) {
  // Two frames: at rest, and gone; also where the text is wider than the canvas.
  for (const int width : {300, 40}) {
    Job job = CanvasJob("simple", width, 50, {{"@frames", "2"}, {"MainFontSize", "40"}});
    job.fit = Job::Fit::None;
    for (const char* direction : {"left", "right"}) {
      job.settings.emplace_back("@scroll", direction);
      const Built built = RunJob(job);
      ASSERT_EQ(built.frames.size(), 2u) << built.result.message;
      BuiltFrame nothing;
      EXPECT_TRUE(Shows(built.frames[1], nothing, 0, 0, 0xFFFFFF)) << width << direction;
      EXPECT_FALSE(Shows(built.frames[0], nothing, 0, 0, 0xFFFFFF));
    }
  }
  Job job = Still(200, 100);
  job.background = "gradient:#000000-#ffffff";
  const BuiltFrame frame = RunJob(job).frames.at(0);
  const auto level = [&](int y) { return static_cast<int>(PixelOf(frame, 199, y) & 255); };
  EXPECT_LT(level(0), 8);
  EXPECT_NEAR(level(50), 128, 4);
  EXPECT_GT(level(99), 249);
  // With an alpha plane, which is zero outside of the text.
  job.settings.emplace_back("62", "1");
  const BuiltFrame clear = RunJob(job).frames.at(0);
  ASSERT_EQ(clear.bits, 32);
  EXPECT_EQ(clear.width, 200);
  int opaque = 0;
  for (std::size_t i = 43; i < clear.dib.size(); i += 4) opaque += clear.dib[i] != 0;
  EXPECT_GT(opaque, 20);
  EXPECT_LT(opaque, 500);
}

}  // namespace
}  // namespace glyphmotion::test
