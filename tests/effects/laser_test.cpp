// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "effects/option_ends.h"
#include "effects/text_levels.h"
#include "image/filters.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style005Frames";
constexpr const char* kScroll = "Style005Scroll";
constexpr Colour kFill = MakeColour(0x33, 0xCC, 0x33), kBackground = MakeColour(0x10, 0x20, 0x30);
constexpr Colour kOutline = 0x333333, kBeam = 0x00FF99, kBeamOutline = 0xFFFFFF;
constexpr int kOffset = 3;  // of the text, by a shadow that is not shown

struct Options {
  int size, diffusion;
  bool onFill, onOutline, outline, fatten, rightwards, alpha;
};

Settings SettingsOf(const Options& options, int frames) {
  const auto flag = [](bool set) { return std::string(set ? "1" : "0"); };
  Settings settings = {{"MainPadding", "2"},
                       {"286", "#102030"},
                       {"Style005Soft", "0"},
                       {"Style005ShadowEnable", "0"},
                       {"Style005ShadowOffset", std::to_string(kOffset)},
                       {"Style005ShadowDirection", "0"},
                       {"Style005BeamSize", std::to_string(options.size)},
                       {"Style005BeamSoft", std::to_string(options.diffusion)},
                       {"Style005FillEnable", flag(options.onFill)},
                       {"Style005OutEnable", flag(options.onOutline)},
                       {"Style005OutlineEnable", flag(options.outline)},
                       {"Style005Fatten", flag(options.fatten)},
                       {kScroll, flag(options.rightwards)},
                       {"62", flag(options.alpha)},
                       {kFrames, std::to_string(frames)}};
  if (options.alpha) settings.emplace_back("63", "0");
  return settings;
}

// A frame by get and set pixel.
struct Picture {
  int width, height;
  std::vector<Colour> pixels;
  std::vector<int> plane;
  Picture(int w, int h)
      : width(w), height(h), pixels(static_cast<std::size_t>(w * h), kBackground), plane(pixels.size()) {}
  bool Holds(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
  void Put(int x, int y, Colour colour, int a) {
    if (!Holds(x, y)) return;
    const auto at = static_cast<std::size_t>(y * width + x);
    pixels[at] = Blend(pixels[at], colour, a);
    plane[at] = std::min(255, plane[at] + a);
  }
};

PackedDib PlainStrip(const Options& options, int height) {
  PackedDib strip = BlankMask(60, height);
  {
    const DibView view(strip);
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < options.size; ++x) view.SetPixel((60 - options.size) / 2 + x, y, 255);
    }
  }
  if (options.diffusion) strip = Blur(strip, options.diffusion + 2);
  return TrimColumns(strip, kTrimLeft | kTrimRight);
}

// The outline's mask in its own columns, one right of the frame's; its hidden columns never reach a frame.
void PlainOutlineBeam(Picture& picture, const Levels& outline, const DibView& strip, double phase, bool fatten) {
  const auto mask = [&](int x, int y) { return outline.At(x - 1, y); };
  const auto beam = [&](int k, int y) { return static_cast<int>(strip.GetPixel(k, y) & 0xFF); };
  const int left = static_cast<int>((outline.width + 4) * phase) + kOffset;
  for (int y = 0; y < strip.Height(); ++y) {
    for (int k = 0; k < strip.Width(); ++k) {
      const int x = left - 1 + k;
      if (!picture.Holds(x, y)) continue;
      const auto half = [&](int dk, int dy) {
        picture.Put(x + dk, y + dy, kBeamOutline, std::min(beam(k + dk, y + dy), mask(x + 1 + dk, y + dy)) >> 1);
      };
      picture.Put(x, y, kBeamOutline, std::min(beam(k, y), mask(x + 1, y)));
      if (!fatten || k + 1 >= strip.Width()) continue;
      half(1, 0);
      if (k == 0) continue;
      half(-1, 0);
      if (y + 1 >= strip.Height()) continue;
      half(0, 1);
      if (y > 0) half(0, -1);
    }
  }
}

Picture PlainFrame(const Options& options, const Levels& letters, const Levels& outline, double phase) {
  Picture picture(letters.width, letters.height);
  const PackedDib made = PlainStrip(options, letters.height);
  const DibView strip(made);
  const auto everywhere = [&](const Levels& mask, Colour colour) {
    for (int y = 0; y < mask.height; ++y) {
      for (int x = 0; x < mask.width; ++x) picture.Put(x, y, colour, mask.At(x, y));
    }
  };
  everywhere(letters, kFill);
  if (options.onFill || !options.onOutline) {
    const int left = static_cast<int>(letters.width * phase) + kOffset;
    for (int y = 0; y < strip.Height(); ++y) {
      for (int k = 0; k < strip.Width(); ++k)
        picture.Put(left + k, y, kBeam, std::min(static_cast<int>(strip.GetPixel(k, y)), letters.At(left + k, y)));
    }
  }
  if (!options.outline) return picture;
  everywhere(outline, kOutline);
  if (options.onOutline) PlainOutlineBeam(picture, outline, strip, phase, options.fatten);
  return picture;
}

std::string FirstDifference(const BuiltFrame& frame, const Picture& picture) {
  if (frame.width != picture.width || frame.height != picture.height) return "size";
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      const auto at = static_cast<std::size_t>(y * picture.width + x);
      const std::size_t byte = 40 + 4 * static_cast<std::size_t>((frame.height - 1 - y) * frame.width + x) + 3;
      if (PixelOf(frame, x, y) != picture.pixels[at] || (frame.bits == 32 && frame.dib[byte] != picture.plane[at]))
        return std::to_string(x) + "," + std::to_string(y);
    }
  }
  return "";
}

TEST(Laser, FramesAreThePlainBeamsOfTheirPhases) {
  const Settings place = {
      {"MainPadding", "2"}, {"Style000ShadowOffset", std::to_string(kOffset)}, {"Style000ShadowDirection", "0"}};
  const Levels letters = LevelsOf(place, false), outline = LevelsOf(place, true);
  ASSERT_EQ(letters.width, outline.width);
  const Options rows[] = {
      {6, 16, true, true, true, false, true, false},  {6, 16, true, true, true, true, false, false},
      {1, 0, true, true, true, true, true, true},     {16, 40, false, true, true, true, false, true},
      {2, 0, false, false, true, true, false, false}, {3, 1, false, true, false, true, true, false},
      {16, 0, true, true, false, false, false, true}, {16, 40, true, true, true, true, true, true},
  };
  for (const Options& row : rows) {
    for (const int frames : {2, 9, 40}) {
      const Built built = BuildWith("laser", SettingsOf(row, frames));
      ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(frames)) << built.result.message;
      for (int i = 0; i < frames; ++i) {
        const double phase =
            row.rightwards ? static_cast<double>(i) / frames : 1.0 - static_cast<double>(i + 2) / frames;
        EXPECT_EQ(FirstDifference(built.frames[static_cast<std::size_t>(i)], PlainFrame(row, letters, outline, phase)),
                  "")
            << "row " << &row - rows << " frame " << i << " of " << frames;
      }
    }
    const Built sample = SampleWith("laser", SettingsOf(row, 2));
    ASSERT_EQ(sample.frames.size(), 1u);
    EXPECT_EQ(FirstDifference(sample.frames[0], PlainFrame(row, letters, outline, 0.585)), "") << &row - rows;
  }
}

TEST(Laser, PausesOnItsLastFrameOnly) {
  for (const int frames : {2, 3, 17, 1000}) {
    const Built built = BuildWith("laser", {{kFrames, std::to_string(frames)}});
    const auto count = static_cast<std::size_t>(frames);
    EXPECT_EQ(BadSchedule(built, count, {count - 1}, count, frames), "");
  }
}

TEST(Laser, ABeamIsAlwaysShownButNotOnAMissingOutline) {
  const auto frames = [](bool onFill, bool onOutline, bool outline) {
    return BuildWith("laser", SettingsOf({6, 16, onFill, onOutline, outline, false, true, false}, 12));
  };
  EXPECT_EQ(frames(false, false, true).frames, frames(true, false, true).frames);
  EXPECT_GT(frames(false, false, true).Distinct(), 1u);
  EXPECT_EQ(frames(false, true, false).Distinct(), 1u);
}

}  // namespace
}  // namespace glyphmotion::test
