// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/gumdrop_image.h"
#include "effects/plain_fill.h"
#include "image/filters.h"
#include "image/surface.h"
#include "platform/random.h"

namespace glyphmotion::test {
namespace {

struct PlainDrop {
  int x, y;
  std::uint32_t colour;
  double size, turn, step;
};

// Drawn ring over ring in colours, four times too large.
PackedDib DrawPlainly(int diameter, int strength, bool bevel) {
  const int side = 4 * diameter, half = side / 2;
  DrawingSurface surface(side, side);
  const auto grey = [](int v) { return static_cast<Colour>(v) * 0x010101u; };
  if (!bevel) surface.FillEllipse({0, 0, side, side}, grey(strength));
  for (int i = 0; bevel && i < half; ++i) {
    const double c = std::cos(static_cast<double>(i) / half * 90 * 3.141592653589793 / 180);
    const double k = c * (static_cast<double>(i + 1) / half) * 0.9;
    surface.FillEllipse({i, i, side - i, side - i},
                        grey(std::clamp(static_cast<int>(k * strength) + strength, 0, 255)));
  }
  return ResampleByPercent(surface.End(), 25, 25);
}

void PaintPlainly(PlainPicture& picture, const PlainDrop& drop, int size, int drift, bool bevel) {
  const double triangle = drop.size <= 50 ? drop.size : 50 - (drop.size - 50);
  const int m = std::min(picture.width, picture.height);
  const int diameter = (static_cast<int>(2 * m * triangle / 100) * size) / 100;
  if (diameter <= 1) return;
  int x = static_cast<int>(drop.x / 100.0 * picture.width), y = static_cast<int>(drop.y / 100.0 * picture.height);
  if (drift > 0) {
    const double angle = static_cast<int>(drop.turn * 360 / 100) * 0.017453292519943295;
    const int radius = (m * drift) / 100;
    x += static_cast<int>(-radius * std::cos(angle));
    y += static_cast<int>(-radius * std::sin(angle));
  }
  const PackedDib dib = DrawPlainly(diameter, static_cast<int>(triangle * 510 / 100) & 255, bevel);
  const DibView image(dib);
  for (int j = 0; j < image.Height(); ++j) {
    for (int i = 0; i < image.Width(); ++i) {
      picture.Blend(x - image.Width() / 2 + i, y - image.Height() / 2 + j, drop.colour,
                    static_cast<int>(image.GetPixel(i, j) & 0xFF));
    }
  }
}

void Move(PlainDrop& drop, double step) {
  drop.size += drop.step;
  if (drop.size <= 0 || drop.size >= 100) {
    drop.step = -drop.step;
    drop.size += drop.step;
  }
  drop.turn += step;
}

TEST(Gumdrops, ADropIsThePlainDrawingReduced) {
  for (int diameter = 2; diameter <= 300; diameter += 1 + diameter / 20) {
    for (const int strength : {255, 254, 131, 40, 3}) {
      for (const bool bevel : {false, true}) {
        const PackedDib plain = DrawPlainly(diameter, strength, bevel);
        const DibView view(plain);
        DropImage image;
        ASSERT_TRUE(DrawGumdrop(diameter, strength, bevel, image));
        ASSERT_EQ(image.side, view.Width());
        int wrong = 0;
        for (int y = 0; y < image.side; ++y)
          for (int x = 0; x < image.side; ++x)
            wrong += image.weights[static_cast<std::size_t>(y * image.side + x)] != (view.GetPixel(x, y) & 0xFF);
        EXPECT_EQ(wrong, 0) << diameter << " " << strength << " " << bevel;
      }
    }
  }
}

TEST(Gumdrops, EveryFrameIsThePlainReading) {
  const struct {
    int frames, density, size, drift;
    bool bevel;
    std::vector<std::uint32_t> colours;
  } rows[] = {{2, 5, 80, 5, true, {0xF7EEE6, 0xDEBE9E, 0x83572C, 0x53371C, 0}},
              {7, 12, 200, 100, true, {0xF7EEE6, 0x83572C}},
              {5, 20, 80, 0, false, {0xF7EEE6}},
              {40, 3, 10, 37, true, {0xF7EEE6, 0}}};
  for (const auto& row : rows) {
    Settings settings = {{"Style007Frames", std::to_string(row.frames)},
                         {"Style007Density", std::to_string(row.density)},
                         {"Style007Size", std::to_string(row.size)},
                         {"Style007Drift", std::to_string(row.drift)},
                         {"Style007BevelEnable", row.bevel ? "1" : "0"},
                         {"Style007Seed", "815"},
                         {"MainFontSize", "30"}};
    const std::uint32_t defaults[] = {0xDEBE9E, 0x83572C, 0x53371C, 0};
    for (int i = 0; i < 4; ++i) {
      const bool on = std::count(row.colours.begin(), row.colours.end(), defaults[i]) > 0;
      settings.emplace_back("Style007FillEnable" + std::to_string(i + 2), on ? "1" : "0");
    }
    const double step = 100.0 / row.frames;
    std::vector<PlainDrop> drops;
    EXPECT_EQ(FramesUnlike(BareJob("gumdrops", "Style007", settings),
                           [&](PlainPicture& fill, PlainPicture&) {
                             if (drops.empty()) {
                               SeedRandom(815);
                               for (int i = 0; i < row.density; ++i) {
                                 PlainDrop drop{};
                                 drop.x = NextRandom() % 100;
                                 drop.y = NextRandom() % 100;
                                 drop.colour = row.colours[static_cast<std::size_t>(NextRandom()) % row.colours.size()];
                                 drop.size = NextRandom() % 100;
                                 drop.step = NextRandom() & 1 ? step : -step;
                                 drops.push_back(drop);
                               }
                             }
                             for (PlainDrop& drop : drops) {
                               PaintPlainly(fill, drop, row.size, row.drift, row.bevel);
                               Move(drop, step);
                             }
                           }),
              0)
        << row.frames;
  }
}

TEST(Gumdrops, LoopsWithoutARest) { ExpectLoops("gumdrops", "Style007"); }

}  // namespace
}  // namespace glyphmotion::test
