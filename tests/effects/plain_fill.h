// SPDX-License-Identifier: MIT
// For effects that paint inside the letters: whole runs against a fill painted pixel by pixel, as one would read it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "effects/option_ends.h"

namespace glyphmotion::test {

/// A picture of colours. Reads outside are all ones, writes outside are dropped.
struct PlainPicture {
  int width = 0, height = 0;
  std::vector<std::uint32_t> pixels;

  PlainPicture(int w, int h, std::uint32_t colour)
      : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), colour) {}
  bool Has(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
  std::size_t At(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
  }
  std::uint32_t Get(int x, int y) const { return Has(x, y) ? pixels[At(x, y)] : 0xFFFFFFFF; }
  void Blend(int x, int y, std::uint32_t over, int a) {
    const std::uint32_t under = Get(x, y);
    std::uint32_t out = 0;
    for (int shift : {0, 8, 16}) {
      const int u = (under >> shift) & 0xFF, o = (over >> shift) & 0xFF;
      out |= static_cast<std::uint32_t>((u * (255 - a) / 255 + o * a / 255) & 0xFF) << shift;
    }
    if (Has(x, y)) pixels[At(x, y)] = out;
  }
};

constexpr std::uint32_t kFillColour = 0x664422, kBackColour = 0xC0D0E0;

/// A run of bare letters, one-bit, without shadow or outline. `stem` is that of the effect's keys.
inline Job BareJob(const std::string& effect, const std::string& stem, const Settings& settings) {
  Job job = SmallJob(effect, {{"51", "0"},
                              {"MainPadding", "3"},
                              {stem + "Soft", "0"},
                              {stem + "ShadowEnable", "0"},
                              {stem + "OutlineEnable", "0"}});
  job.text = "M8g";
  job.settings.insert(job.settings.end(), settings.begin(), settings.end());
  job.fill = "#224466";
  job.background = "#e0d0c0";
  return job;
}

/// The picture of the same letters at rest: kFillColour inside, kBackColour outside.
inline Built LettersOf(const Job& job) {
  Job letters = BareJob("simple", "Style000", {{"22", "0"}});
  letters.text = job.text;
  for (const Job::Setting& setting : job.settings) {
    if (setting.first.starts_with("Main")) letters.settings.push_back(setting);
  }
  return RunJob(letters);
}

/// Runs the job and compares each frame with what `paint` makes of it: it is given the fill and the background of a
/// frame to paint on, once a frame, after one call for the render that is thrown away. Frames that differ are counted.
inline int FramesUnlike(const Job& job, const std::function<void(PlainPicture& fill, PlainPicture& back)>& paint) {
  const Built built = RunJob(job), letters = LettersOf(job);
  if (built.frames.empty() || letters.frames.size() != 1) return -1;
  const BuiltFrame& mask = letters.frames[0];
  int unlike = 0;
  for (std::size_t i = 0; i <= built.frames.size(); ++i) {
    PlainPicture fill(mask.width, mask.height, kFillColour), back(mask.width, mask.height, kBackColour);
    paint(fill, back);
    if (i == 0) continue;
    const BuiltFrame& frame = built.frames[i - 1];
    if (frame.width != mask.width || frame.height != mask.height) return -2;
    bool same = true;
    for (int y = 0; y < mask.height; ++y) {
      for (int x = 0; x < mask.width; ++x) {
        const PlainPicture& shown = PixelOf(mask, x, y) == kFillColour ? fill : back;
        same &= PixelOf(frame, x, y) == shown.Get(x, y);
      }
    }
    unlike += !same;
  }
  return unlike;
}

/// A loop without a rest: as many frames as asked for, the ordinary delay on each, progress from 0; equal seeds give
/// equal pictures.
inline void ExpectLoops(const std::string& effect, const std::string& stem) {
  const auto build = [&](int frames, const std::string& seed) {
    return BuildWith(effect, {{stem + "Frames", std::to_string(frames)}, {stem + "Seed", seed}, {"22", "0"}});
  };
  for (int frames : {2, 3, 17, 130}) {
    const Built built = build(frames, "777");
    const auto count = static_cast<std::size_t>(frames);
    EXPECT_EQ(BadSchedule(built, count, {}, count, frames), "") << "no pause in a loop";
  }
  const Built one = build(5, "100"), same = build(5, "100"), other = build(5, "101");
  EXPECT_TRUE(one.frames == same.frames);
  EXPECT_FALSE(one.frames == other.frames);
  Job empty = SmallJob(effect);
  empty.text = "";
  EXPECT_TRUE(RunJob(empty).frames.empty());
  Job endless = SmallJob(effect, {{stem + "Frames", "32760"}, {"MainFontSize", "144"}});
  endless.text = std::string(200, 'W');
  const Built refused = RunJob(endless);
  EXPECT_EQ(refused.result.status, RenderStatus::Failed);
  EXPECT_NE(refused.result.message.find("does not fit"), std::string::npos) << refused.result.message;
}

}  // namespace glyphmotion::test
