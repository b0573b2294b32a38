// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/effect_checks.h"
#include "effects/ripple_fill.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style012Frames";

// The ripple one pixel at a time.
PackedDib PlainRipple(const PackedDib& source, const ElasticParams& params) {
  const DibView from(source);
  const int width = from.Width(), height = from.Height();
  PackedDib result = BlankLike(from, width, height);
  const DibView to(result);
  const double amp = params.amplitude / 100.0, wl = params.wavelength / 100.0, off = params.waveOffset / 100.0;
  const double cx = (width * (params.centerX - 100)) / 100 + width * 0.5;
  const double cy = (height * (params.centerY - 100)) / 100 + height * 0.5;
  const double diag = std::sqrt((height - cy) * (height - cy) + (width - cx) * (width - cx));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double dx = x - cx, dy = y - cy, r = std::sqrt(dx * dx + dy * dy);
      double w = std::sin((r / wl) * 6.283185307179586 + off) * amp;
      if (params.falloff) w = w * (1 - r / (diag + 0.0001)) * (params.energy / 100.0);
      const double sx = std::clamp(x + w, 0.0, width - 1.0), sy = std::clamp(y + w, 0.0, height - 1.0);
      const int xi = static_cast<int>(sx), yi = static_cast<int>(sy);
      const bool right = xi <= width - 2, below = yi <= height - 2;
      const std::uint32_t p00 = from.GetPixel(xi, yi), p10 = right ? from.GetPixel(xi + 1, yi) : 0;
      const std::uint32_t p01 = below ? from.GetPixel(xi, yi + 1) : 0;
      const std::uint32_t p11 = right && below ? from.GetPixel(xi + 1, yi + 1) : 0;
      const auto fx = static_cast<float>(std::fmod(sx, 1.0)), fy = static_cast<float>(std::fmod(sy, 1.0));
      std::uint32_t value = 0;
      for (int shift = 0; shift < from.Bits(); shift += 8) {
        const auto at = [&](std::uint32_t p) { return static_cast<float>(p >> shift & 0xFF); };
        const float upper = at(p00) * (1 - fx) + at(p10) * fx, lower = at(p01) * (1 - fx) + at(p11) * fx;
        value |= (static_cast<std::uint32_t>(upper * (1 - fy) + lower * fy) & 0xFF) << shift;
      }
      to.SetPixel(x, y, value);
    }
  }
  return result;
}

TEST(Elastic, TheFastRippleIsThePlainOne) {
  Dice dice(3);
  for (int round = 0; round < 60; ++round) {
    const int bits[] = {24, 8, 32};
    const int width = round < 3 ? 1 : Roll(dice, 1, 120), height = round < 2 ? 1 : Roll(dice, 1, 60);
    const PackedDib source = RandomImage(dice, width, height, bits[round % 3]);
    ElasticParams params;
    const double phase = Roll(dice, 0, 100) / 100.0;
    params.wavelength = 400 + static_cast<int>(4600 * phase);
    params.amplitude = 70 + static_cast<int>(5930 * phase);
    params.energy = Roll(dice, 5, 100);
    if (round % 4 == 3) {
      params.centerX = Roll(dice, -50, 250);
      params.centerY = Roll(dice, -50, 250);
      params.falloff = Roll(dice, 0, 1) == 1;
    }
    ASSERT_EQ(Difference(RippleFill(source, params), PlainRipple(source, params)), "") << round;
  }
}

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

TEST(Elastic, RestsUnbentWhateverTheEnergy) {
  const std::string gradient = "gradient:#ff0000-#0000ff";
  const Built weak = BuildWith("elastic", {{kFrames, "2"}, {"575", gradient}, {"Style012Energy", "5"}});
  const Built strong = BuildWith("elastic", {{kFrames, "2"}, {"575", gradient}, {"Style012Energy", "100"}});
  const Built sample = SampleWith("elastic", {{"575", gradient}, {"Style012Energy", "100"}});
  ASSERT_EQ(weak.frames.size() + strong.frames.size() + sample.frames.size(), 9u);
  EXPECT_EQ(weak.frames[0], strong.frames[0]);
  EXPECT_EQ(sample.frames[0], strong.frames[0]);
  EXPECT_FALSE(weak.frames[1] == strong.frames[1]);
}

}  // namespace
}  // namespace glyphmotion::test
