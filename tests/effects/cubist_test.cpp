// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "effects/plain_fill.h"
#include "platform/random.h"

namespace glyphmotion::test {
namespace {

struct PlainSquare {
  int x, y, step;
  std::uint32_t colour;
};

// A square's mask in full, blended pixel by pixel.
void PaintPlainly(PlainPicture& picture, const PlainSquare& square, int frames, int lineWidth, bool levels,
                  bool widths) {
  const int middle = frames / 2, t = square.step <= middle ? square.step : frames - square.step;
  const int size = 2 * (t * picture.height / middle);
  const double f = static_cast<double>(t) / middle;
  const int level = levels ? std::clamp(static_cast<int>(255 * f), 0, 255) : 255;
  if (widths) lineWidth = std::clamp(static_cast<int>(lineWidth * f), 1, 255);
  PlainPicture mask(size, size, 0);
  const auto set = [&](int x, int y) {
    if (mask.Has(x, y)) mask.pixels[mask.At(x, y)] = static_cast<std::uint32_t>(level);
  };
  for (int r = 0; r < lineWidth; ++r) {
    for (int i = 0; i < size; ++i) {
      set(i, r);
      set(i, size - r - 1);
      set(r, i);
      set(size - r - 1, i);
    }
  }
  for (int j = 0; j < size; ++j) {
    for (int i = 0; i < size; ++i) {
      picture.Blend(square.x - size / 2 + i, square.y - size / 2 + j, square.colour, static_cast<int>(mask.Get(i, j)));
    }
  }
}

TEST(Cubist, EveryFrameIsThePlainReading) {
  const struct {
    int frames, density, width;
    bool levels, widths;
    std::vector<std::uint32_t> colours;
  } rows[] = {{2, 3, 8, false, false, {0xFF, 0xFF00, 0xFF0000, 0xFF00FF, 0xFFFF}},
              {3, 20, 1, true, false, {0xFF, 0xFF00, 0xFFFF}},
              {5, 100, 16, false, true, {0xFF}},
              {16, 9, 5, true, true, {0xFF, 0xFF00FF}},
              {6, 0, 8, false, false, {0xFF}}};
  for (const auto& row : rows) {
    Settings settings = {{"Style019Frames", std::to_string(row.frames)},
                         {"Style019Density", std::to_string(row.density)},
                         {"Style019Width", std::to_string(row.width)},
                         {"Style019VariAlpha", row.levels ? "1" : "0"},
                         {"Style019VariWidth", row.widths ? "1" : "0"},
                         {"Style019Seed", "4711"},
                         {"MainFontSize", "30"}};
    const std::uint32_t defaults[] = {0xFF00, 0xFF0000, 0xFF00FF, 0xFFFF};
    for (int i = 0; i < 4; ++i) {
      const bool on = std::count(row.colours.begin(), row.colours.end(), defaults[i]) > 0;
      settings.emplace_back("Style019BeamEnable" + std::to_string(i + 2), on ? "1" : "0");
    }
    std::vector<PlainSquare> squares;
    EXPECT_EQ(FramesUnlike(BareJob("cubist", "Style019", settings),
                           [&](PlainPicture& fill, PlainPicture&) {
                             if (squares.empty()) {
                               SeedRandom(4711);
                               for (int i = 0; i < row.density; ++i) {
                                 PlainSquare square{};
                                 square.x = NextRandom() % fill.width;
                                 square.y = NextRandom() % fill.height;
                                 square.step = NextRandom() % row.frames;
                                 square.colour =
                                     row.colours[static_cast<std::size_t>(NextRandom()) % row.colours.size()];
                                 squares.push_back(square);
                               }
                             }
                             for (PlainSquare& square : squares) {
                               PaintPlainly(fill, square, row.frames, row.width, row.levels, row.widths);
                               square.step = (square.step + 1) % row.frames;
                             }
                           }),
              0)
        << row.frames;
  }
}

TEST(Cubist, LoopsWithoutARest) {
  ExpectLoops("cubist", "Style019");
  // The sample shows the squares where the last frame brings them back to.
  const Built built = BuildWith("cubist", {{"Style019Frames", "7"}});
  EXPECT_EQ(built.frames.at(6), SampleWith("cubist", {{"Style019Frames", "7"}}).frames.at(0));
}

}  // namespace
}  // namespace glyphmotion::test
