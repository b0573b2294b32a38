// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "effects/option_ends.h"
#include "effects/text_levels.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kFrames = "Style010Frames";
constexpr const char* kLight = "gradient:linear,#ff0000-#ffff80,rotation=30";
constexpr const char* kDark = "gradient:linear,#000000-#004080,rotation=70";
const Settings kBare = {{"MainPadding", "2"},
                        {"511", "0"},
                        {"Style010ShadowEnable", "0"},
                        {"Style010OutlineEnable", "0"},
                        {"497", kLight},
                        {"521", kDark},
                        {"501", "#102030"}};
constexpr Colour kBackground = MakeColour(0x10, 0x20, 0x30);

struct Generator {
  std::uint32_t state;
  int Next() {
    state = state * 214013u + 2531011u;
    return static_cast<int>((state >> 16) & 0x7FFF);
  }
};

int PlainPoisson(Generator& random) {
  double u = (random.Next() & 32767) / 32767.0;
  if (u == 0) u = 1.0;
  const double limit = std::exp(-6.4);
  int k = 0;
  while (u > limit) {
    k += 1;
    u *= (random.Next() & 32767) / 32767.0;
  }
  const double n = k / 0.05;
  return n > 255 ? 255 : static_cast<int>(n + 0.5);
}

// The noise fill pass by pass, each over the whole mask, as one would write it down.
PackedDib PlainFill(const PackedDib& lightFill, const PackedDib& darkFill, int size, int interference, double phase,
                    Generator& random) {
  const DibView light(lightFill), dark(darkFill);
  const int width = light.Width(), height = light.Height();
  PackedDib noise = BlankMask(width, height), result = BlankDib(width, height, nullptr, 24);
  const DibView mask(noise), to(result);
  const auto each = [&](auto change) {
    for (int y = height - 1; y >= 0; --y) {
      for (int x = 0; x < width; ++x)
        mask.SetPixel(x, y, static_cast<std::uint32_t>(change(static_cast<int>(mask.GetPixel(x, y)))));
    }
  };
  each([&](int) { return std::max(0, PlainPoisson(random) - 64); });
  int lowest = 255, highest = 0;
  each([&](int v) { return lowest = std::min(lowest, v), v; });
  each([&](int v) { return v - lowest; });
  each([&](int v) { return highest = std::max(highest, v), v; });
  each([&](int v) { return v * 255 / (255 - highest) & 0xFF; });
  std::vector<int> band(static_cast<std::size_t>(height));
  int row = static_cast<int>(height * phase);
  for (int i = 0; i < height && interference > 0; ++i) {
    if (row >= height) row = 0;
    band[static_cast<std::size_t>(row++)] =
        static_cast<int>(std::sin((static_cast<double>(i) / height) * 180 * 3.141592653589793 / 180) * interference);
  }
  const int cell = std::max(2, size * 3 / 2);
  for (int y = 0; y < height; y += size) {
    for (int x = 0; x < width; x += cell) {
      const int m = std::min(255, static_cast<int>(mask.GetPixel(x, y)) + band[static_cast<std::size_t>(y)]);
      const Colour colour = Blend(dark.GetPixel(x, y), light.GetPixel(x, y), m);
      for (int j = 0; j < size; ++j) {
        for (int i = 0; i < cell; ++i) to.SetPixel(x + i, y + j, colour);
      }
    }
  }
  return result;
}

TEST(WhiteNoise, FramesAndRandomDelaysFollowOneSequence) {
  const Levels letters = LevelsOf({{"MainPadding", "2"}}, false);
  const PackedDib light = FillOf(kLight, letters.width, letters.height);
  const PackedDib dark = FillOf(kDark, letters.width, letters.height);
  const struct {
    int seed, size, interference, delay;
    bool randomDelay;
    int frames;
  } rows[] = {{11234, 1, 160, 4, true, 7},
              {100, 2, 0, 4, false, 2},
              {32760, 3, 255, 1, true, 5},
              {777, 8, 255, 250, true, 3},
              {778, 4, 1, 2, true, 17}};
  for (const auto& row : rows) {
    Settings settings = kBare;
    settings.emplace_back("Style010Seed", std::to_string(row.seed));
    settings.emplace_back("Style010Size", std::to_string(row.size));
    settings.emplace_back("Style010Interference", std::to_string(row.interference));
    settings.emplace_back("Style010RandomDelay", row.randomDelay ? "1" : "0");
    settings.emplace_back("MainDelay", std::to_string(row.delay));
    settings.emplace_back(kFrames, std::to_string(row.frames));
    const Built built = BuildWith("white-noise", settings);
    ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(row.frames)) << built.result.message;
    Generator random{static_cast<std::uint32_t>(row.seed)};
    const auto fill = [&](double phase) { return PlainFill(light, dark, row.size, row.interference, phase, random); };
    fill(0.25);  // the frame that is thrown away draws too
    for (int i = 0; i < row.frames; ++i) {
      const BuiltFrame& frame = built.frames[static_cast<std::size_t>(i)];
      EXPECT_EQ(FirstDifference(frame, letters, fill(static_cast<double>(i) / row.frames), kBackground), "")
          << "seed " << row.seed << " frame " << i;
      int delay = row.delay;
      if (row.randomDelay) delay = random.Next() % row.delay < 1 ? 1 : random.Next() % row.delay;
      EXPECT_EQ(frame.delay, delay) << "seed " << row.seed << " frame " << i;
      EXPECT_EQ(built.progress[static_cast<std::size_t>(i)], std::make_pair(std::int64_t{i}, std::int64_t{row.frames}));
    }
    Generator anew{static_cast<std::uint32_t>(row.seed)};
    const Built sample = SampleWith("white-noise", settings);
    ASSERT_EQ(sample.frames.size(), 1u);
    EXPECT_EQ(FirstDifference(sample.frames[0], letters, PlainFill(light, dark, row.size, row.interference, 0.25, anew),
                              kBackground),
              "");
  }
}

TEST(WhiteNoise, OneSeedGivesOnePicture) {
  const Settings few = {{kFrames, "5"}};
  Settings other = few;
  other.emplace_back("Style010Seed", "11235");
  const Built a = BuildWith("white-noise", few), b = BuildWith("white-noise", few), c = BuildWith("white-noise", other);
  EXPECT_EQ(a.frames, b.frames);
  EXPECT_EQ(a.Delays(), b.Delays());
  EXPECT_EQ(a.Distinct(), 5u);
  ASSERT_EQ(c.frames.size(), 5u);
  EXPECT_FALSE(a.frames[0] == c.frames[0]);
}

// A texture seeds the generator when it is rendered, also where its pixels are remembered: the noise after it is the
// same in every frame.
TEST(WhiteNoise, ATextureFillFreezesTheGrain) {
  const std::string path = testing::TempDir() + "glyphmotion_white_noise_test.mtrl";
  MovableBlock block = LoadMaterial("", 0x804020, false);
  LockedBlock<Material>(block.Handle())->Kind = kTexture;
  ASSERT_TRUE(SaveMaterial(block.Handle(), path));
  FreeMaterial(block.Release());
  for (const char* control : {"497", "521"}) {
    const Built built = BuildWith(
        "white-noise",
        {{kFrames, "4"}, {control, "mtrl:" + path}, {"Style010Interference", "0"}, {"Style010RandomDelay", "0"}});
    EXPECT_EQ(built.frames.size(), 4u) << built.result.message;
    EXPECT_EQ(built.Distinct(), 1u) << control;
  }
}

}  // namespace
}  // namespace glyphmotion::test
