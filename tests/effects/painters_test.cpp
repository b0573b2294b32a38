// SPDX-License-Identifier: MIT
// The fast painters of drops and rays against drawings that are made large and reduced whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "effects/gumdrop_image.h"
#include "effects/ray_painter.h"
#include "image/filters.h"
#include "image/random_images.h"

namespace glyphmotion::test {
namespace {

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

TEST(Painters, ADropIsThePlainDrawingReduced) {
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

// The ray on a surface of its own, three times too large, reduced whole and blended.
void PaintPlainly(const DibView& picture, Point from, Point to, int penWidth, int level, Colour colour) {
  DrawingSurface surface(3 * picture.Width(), 3 * picture.Height());
  const Point line[] = {{3 * from.x, 3 * from.y}, {3 * to.x, 3 * to.y}};
  surface.Polyline(line, 3 * penWidth, static_cast<Colour>(level) * 0x010101u);
  const PackedDib mask = ResampleByPercent(surface.End(), 33, 33);
  const DibView weights(mask);
  for (int y = 0; y < weights.Height(); ++y) {
    for (int x = 0; x < weights.Width(); ++x) {
      const int weight = static_cast<int>(weights.GetPixel(x, y) & 0xFF);
      picture.SetPixel(x, y, Blend(picture.GetPixel(x, y), colour, weight));
    }
  }
}

TEST(Painters, ARayIsTheWholeSurfaceReduced) {
  Dice dice(3);
  RayPainter painter;
  const auto below = [&](int n) { return Roll(dice, 0, n - 1); };
  const std::pair<int, int> sizes[] = {{1, 1},    {2, 3},   {7, 2},    {64, 20}, {20, 65},
                                       {151, 40}, {33, 33}, {201, 67}, {50, 50}};
  for (const auto& [width, height] : sizes) {
    for (int i = 0; i < 60; ++i) {
      const bool upright = i & 1;
      Point from = upright ? Point{below(width), 0} : Point{0, below(height)};
      Point to = upright ? Point{below(width), height} : Point{width, below(height)};
      if (i % 5 == 0) to = upright ? Point{from.x, to.y} : Point{to.x, from.y};  // exactly upright or level
      if (i % 7 == 0) from = {below(3 * width) - width, below(3 * height) - height};
      if (i & 2) std::swap(from, to);
      const int pen = 1 + below(8), level = i % 3 ? 64 * (1 + below(3)) : 255;
      const Colour colour = static_cast<Colour>(below(1 << 24)), under = static_cast<Colour>(below(1 << 24));
      const PackedDib plain = SolidDib(width, height, under), fast = SolidDib(width, height, under);
      PaintPlainly(DibView(plain), from, to, pen, level, colour);
      ASSERT_TRUE(painter.Prepare(width, height));
      painter.Paint(DibView(fast), from, to, pen, level, colour);
      ASSERT_EQ(Difference(fast, plain), "") << width << "x" << height << " ray " << i;
    }
  }
}

}  // namespace
}  // namespace glyphmotion::test
