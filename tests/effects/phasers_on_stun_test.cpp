// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "effects/plain_fill.h"
#include "effects/ray_painter.h"
#include "image/filters.h"
#include "platform/random.h"

namespace glyphmotion::test {
namespace {

// The ray on a surface of its own, three times too large, reduced whole.
PackedDib RayPlainly(int width, int height, Point from, Point to, int penWidth, int level) {
  DrawingSurface surface(3 * width, 3 * height);
  const Point line[] = {{3 * from.x, 3 * from.y}, {3 * to.x, 3 * to.y}};
  surface.Polyline(line, 3 * penWidth, static_cast<Colour>(level) * 0x010101u);
  return ResampleByPercent(surface.End(), 33, 33);
}

void BlendPlainly(PlainPicture& picture, const PackedDib& mask, std::uint32_t colour) {
  const DibView view(mask);
  for (int y = 0; y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) picture.Blend(x, y, colour, static_cast<int>(view.GetPixel(x, y) & 0xFF));
  }
}

std::uint64_t Mix(std::uint64_t& state) {
  state = state * 6364136223846793005u + 1442695040888963407u;
  return state >> 33;
}

TEST(Phasers, ARayIsTheWholeSurfaceReduced) {
  std::uint64_t state = 3;
  const auto below = [&](int n) { return static_cast<int>(Mix(state) % static_cast<std::uint64_t>(n)); };
  RayPainter painter;
  for (const auto& [width, height] : {std::make_pair(1, 1), std::make_pair(2, 3), std::make_pair(7, 2),
                                      std::make_pair(64, 20), std::make_pair(20, 65), std::make_pair(151, 40),
                                      std::make_pair(33, 33), std::make_pair(201, 67), std::make_pair(50, 50)}) {
    for (int i = 0; i < 60; ++i) {
      const bool upright = i & 1;
      Point from = upright ? Point{below(width), 0} : Point{0, below(height)};
      Point to = upright ? Point{below(width), height} : Point{width, below(height)};
      if (i % 5 == 0) to = upright ? Point{from.x, to.y} : Point{to.x, from.y};  // exactly upright or level
      if (i % 7 == 0) from = {below(3 * width) - width, below(3 * height) - height};
      if (i & 2) std::swap(from, to);
      const int pen = 1 + below(8), level = i % 3 ? 64 * (1 + below(3)) : 255;
      const Colour colour = static_cast<Colour>(below(1 << 24)), under = static_cast<Colour>(below(1 << 24));
      PlainPicture expected(width, height, under);
      BlendPlainly(expected, RayPlainly(width, height, from, to, pen, level), colour);
      const PackedDib dib = SolidDib(width, height, under);
      const DibView picture(dib);
      ASSERT_TRUE(painter.Prepare(width, height));
      painter.Paint(picture, from, to, pen, level, colour);
      int unlike = 0;
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) unlike += picture.GetPixel(x, y) != expected.Get(x, y);
      }
      ASSERT_EQ(unlike, 0) << width << "x" << height << " ray " << i;
    }
  }
}

struct PlainBeam {
  Point from, to;
  int frame, level;
  std::uint32_t colour;
};

std::vector<PlainBeam> PlainBeams(int width, int height, int density, int frames,
                                  const std::vector<std::uint32_t>& colours) {
  std::vector<PlainBeam> beams;
  int last = -1;
  for (int made = 0; made < density;) {
    const int side = NextRandom() & 3;
    if (side == last) continue;
    last = side;
    ++made;
    PlainBeam beam{};
    const int span = side % 2 ? height : width, a = NextRandom() % span, b = NextRandom() % span;
    switch (side) {
      case 0:
        beam.from = {a, 0}, beam.to = {b, height};
        break;
      case 1:
        beam.from = {width, a}, beam.to = {0, b};
        break;
      case 2:
        beam.from = {a, height}, beam.to = {b, 0};
        break;
      default:
        beam.from = {0, a}, beam.to = {width, b};
        break;
    }
    beam.colour = colours[static_cast<std::size_t>(NextRandom()) % colours.size()];
    const int first = NextRandom() % frames;
    for (int k = 0; k < 4; ++k) {
      beam.frame = (first + k) % frames;
      beam.level = k == 0 ? 255 : 256 - 64 * k;
      beams.push_back(beam);
    }
  }
  return beams;
}

TEST(Phasers, EveryFrameIsThePlainReading) {
  const struct {
    int frames, density, power;
    std::vector<std::uint32_t> colours;
  } rows[] = {{2, 16, 1, {0xFF, 0xFF00, 0xFF0000, 0xFF00FF, 0xFFFF}},
              {5, 40, 8, {0xFF}},
              {17, 30, 3, {0xFF, 0xFF0000, 0xFFFF}}};
  for (const auto& row : rows) {
    Settings settings = {{"Style018Frames", std::to_string(row.frames)},
                         {"Style018Density", std::to_string(row.density)},
                         {"Style018Beamsize", std::to_string(row.power)},
                         {"Style018Seed", "333"},
                         {"MainFontSize", "30"}};
    const std::uint32_t defaults[] = {0xFF00, 0xFF0000, 0xFF00FF, 0xFFFF};
    for (int i = 0; i < 4; ++i) {
      const bool on = std::count(row.colours.begin(), row.colours.end(), defaults[i]) > 0;
      settings.emplace_back("Style018BeamEnable" + std::to_string(i + 2), on ? "1" : "0");
    }
    std::vector<PlainBeam> beams;
    int frame = -1;  // the render that is thrown away shows frame 0 too
    EXPECT_EQ(FramesUnlike(BareJob("phasers-on-stun", "Style018", settings),
                           [&](PlainPicture& fill, PlainPicture&) {
                             if (beams.empty()) {
                               SeedRandom(333);
                               beams = PlainBeams(fill.width, fill.height, row.density, row.frames, row.colours);
                             }
                             for (const PlainBeam& beam : beams) {
                               if (beam.frame != std::max(frame, 0)) continue;
                               BlendPlainly(
                                   fill, RayPlainly(fill.width, fill.height, beam.from, beam.to, row.power, beam.level),
                                   beam.colour);
                             }
                             ++frame;
                           }),
              0)
        << row.frames;
  }
}

TEST(Phasers, LoopsWithoutARestAndTheSampleIsTheMiddle) {
  ExpectLoops("phasers-on-stun", "Style018");
  for (const char* frames : {"9", "6"}) {
    const Built built = BuildWith("phasers-on-stun", {{"Style018Frames", frames}});
    const Built sample = SampleWith("phasers-on-stun", {{"Style018Frames", frames}});
    EXPECT_EQ(built.frames.at(built.frames.size() / 2), sample.frames.at(0));
  }
}

}  // namespace
}  // namespace glyphmotion::test
