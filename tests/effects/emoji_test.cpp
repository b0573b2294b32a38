// SPDX-License-Identifier: MIT
// Emoji keep their colours under every effect. The font is tests/fonts/two_squares.ttf: U+1F7E5 is a flat red square,
// "A" a letter without colours.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "effects/build_harness.h"
#include "effects/effect_table.h"

namespace glyphmotion::test {
namespace {

const std::set<std::string> kMoving = {"Breaker", "Event Horizon", "Nebula", "Pinch",      "Pulse",
                                       "Ripple",  "Simple",        "Vortex", "Singularity"};

Built BuildEmoji(const std::string& effect, const std::string& text, const std::string& fill, bool colour) {
  Job job = SmallJob(effect, {});
  job.text = text;
  job.fontFile = GLYPHMOTION_SOURCE_DIR "/tests/fonts/two_squares.ttf";
  job.colourEmoji = colour;
  job.fill = fill;
  job.background = "#ffffff";
  return RunJob(job);
}

int DifferenceOf(std::uint32_t a, std::uint32_t b) {
  int most = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    most = std::max(most, std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)));
  }
  return most;
}

// What rounding and the filters' overshoot may add up to; colours left behind would differ by much more.
constexpr int kRounding = 40;

// A red emoji among red letters is a letter, so a frame shows whether its colours moved with its shape.
TEST(Emoji, ColoursMoveWithTheMask) {
  for (const std::string& effect : kMoving) {
    SCOPED_TRACE(effect);
    const Built coloured = BuildEmoji(effect, "A\U0001F7E5A", "#ff0000", true);
    const Built letters = BuildEmoji(effect, "A\U0001F7E5A", "#ff0000", false);
    ASSERT_EQ(coloured.frames.size(), letters.frames.size());
    ASSERT_GT(coloured.frames.size(), 1u);
    for (std::size_t i = 0; i < coloured.frames.size(); ++i) {
      const BuiltFrame &a = coloured.frames[i], &b = letters.frames[i];
      ASSERT_EQ(a.width, b.width);
      for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
          ASSERT_LE(DifferenceOf(PixelOf(a, x, y), PixelOf(b, x, y)), kRounding) << i << ": " << x << ", " << y;
        }
      }
    }
  }
}

// Pictures of a font of pictures are scaled from their one size, and placed where a letter would be.
TEST(Emoji, PicturesStandOnTheLineInTheSizeOfLetters) {
  for (const int size : {24, 80}) {
    Job job = SmallJob("White Noise");
    job.text = "\U0001F600";
    job.font = "Noto Color Emoji";
    job.size = size;
    job.outline = job.shadow = "none";
    job.background = "#0000ff";
    const Built built = RunJob(job);
    ASSERT_GT(built.frames.size(), 0u) << built.result.message;
    int top = 999, bottom = 0;
    for (const BuiltFrame& frame : built.frames) {
      for (int y = 0; y < frame.height; ++y) {
        const bool shown = (PixelOf(frame, frame.width / 2, y) >> 8 & 0xFF) > 128;  // the face is yellow
        if (shown) top = std::min(top, y), bottom = std::max(bottom, y);
      }
    }
    EXPECT_NEAR(100 * top / size, 15, 8) << size;
    EXPECT_NEAR(100 * bottom / size, 98, 6) << size;
  }
}

// Beside the emoji nothing changes: neither pixels nor random numbers.
TEST(Emoji, EverythingElseStaysAsItIs) {
  for (int effect = 0; effect < kEffectCount; ++effect) {
    const std::string name = EffectRow(effect).name;
    SCOPED_TRACE(name);
    const Built coloured = BuildEmoji(name, "AA\U0001F7E5", name == "Iris" ? "" : "#0000ff", true);
    const Built letters = BuildEmoji(name, "AA\U0001F7E5", name == "Iris" ? "" : "#0000ff", false);
    ASSERT_EQ(coloured.frames.size(), letters.frames.size()) << coloured.result.message;
    ASSERT_GT(coloured.frames.size(), 0u);
    bool red = false;
    for (std::size_t i = 0; i < coloured.frames.size(); ++i) {
      const BuiltFrame &a = coloured.frames[i], &b = letters.frames[i];
      EXPECT_EQ(a.delay, b.delay);
      for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
          const std::uint32_t pixel = PixelOf(a, x, y);
          red |= DifferenceOf(pixel, 0x0000FF) < 40;
          const bool beside = x < a.width / 3 && !kMoving.contains(name);
          if (beside) {
            ASSERT_EQ(pixel, PixelOf(b, x, y)) << i << ": " << x << ", " << y;
          }
        }
      }
    }
    EXPECT_TRUE(red);
  }
}

}  // namespace
}  // namespace glyphmotion::test
