// SPDX-License-Identifier: MIT
// Shapes against twins that ask, pixel by pixel and in exact numbers, whether the rule covers it.
#include "image/surface.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace glyphmotion {
namespace {

using Exact = __int128;
using Points = std::vector<Point>;

constexpr Colour kInk = 0x332211;

std::mt19937& Rng() {
  static std::mt19937 rng(7);
  return rng;
}
int Random(std::int64_t low, std::int64_t high) { return static_cast<int>(low + Rng()() % (high - low + 1)); }

// A coordinate near a surface of some side, or now and then anywhere at all.
int RandomPlace(int side, bool far) {
  if (far && Random(0, 2) == 0)
    return std::array{INT_MIN, INT_MAX, Random(-2000000000, 2000000000), -70000,
                      1 << 20}[static_cast<std::size_t>(Random(0, 4))];
  return Random(-side / 2, side + side / 2);
}

Points RandomPoints(int count, int side, bool far) {
  Points points;
  for (int i = 0; i < count; ++i) points.push_back({RandomPlace(side, far), RandomPlace(side, far)});
  return points;
}

std::string Describe(const Points& points) {
  std::ostringstream text;
  for (Point p : points) text << "(" << p.x << "," << p.y << ") ";
  return text.str();
}

using Covers = std::function<bool(int x, int y)>;

void ExpectShape(DrawingSurface& surface, const Covers& covers, const std::string& what) {
  const int width = surface.Width(), height = surface.Height();
  const PackedDib dib = surface.End();
  const DibView view(dib);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      ASSERT_EQ(view.GetPixel(x, y), covers(x, y) ? kInk : 0u) << what << " at " << x << ", " << y;
    }
  }
}

std::vector<std::string> Drawing(DrawingSurface& surface) {
  const int width = surface.Width(), height = surface.Height();
  const PackedDib dib = surface.End();
  const DibView view(dib);
  std::vector<std::string> rows;
  for (int y = 0; y < height; ++y) {
    rows.emplace_back();
    for (int x = 0; x < width; ++x) rows.back() += view.GetPixel(x, y) ? '#' : '.';
  }
  return rows;
}

bool PolygonCovers(const Points& points, FillRule rule, int x, int y) {
  int crossings = 0, winding = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    Point a = points[i], b = points[(i + 1) % points.size()];
    const int direction = a.y < b.y ? 1 : -1;
    if (direction < 0) std::swap(a, b);
    if (y < a.y || y >= b.y) continue;
    // The edge's x at row y is at or left of x.
    if ((Exact{x} - a.x) * (Exact{b.y} - a.y) >= (Exact{y} - a.y) * (Exact{b.x} - a.x)) {
      ++crossings;
      winding += direction;
    }
  }
  return rule == FillRule::Alternate ? crossings % 2 : winding != 0;
}

TEST(Surface, PolygonsFillWhatTheRuleCovers) {
  for (int round = 0; round < 1500; ++round) {
    const bool far = round % 3 == 0;
    const Points points = RandomPoints(round % 50 == 0 ? Random(33, 90) : Random(2, 8), 40, far);
    const FillRule rule = round % 2 ? FillRule::Winding : FillRule::Alternate;
    DrawingSurface surface(37, 29);
    surface.FillPolygon(points, kInk, rule);
    ExpectShape(
        surface, [&](int x, int y) { return PolygonCovers(points, rule, x, y); }, Describe(points));
  }
}

TEST(Surface, EllipsesOfWorkedExamples) {
  const struct {
    Rect box;
    std::vector<std::string> rows;
  } examples[] = {
      {{0, 0, 3, 3}, {".#.", "###", ".#."}},
      {{0, 0, 5, 5}, {".###.", "#####", "#####", "#####", ".###."}},
      {{1, 1, 9, 9},
       {".........", "...####..", "..######.", ".########", ".########", ".########", ".########", "..######.",
        "...####.."}},
      {{0, 0, 9, 5}, {"..#####..", ".#######.", "#########", ".#######.", "..#####.."}},
      {{0, 0, 3, 8}, {".#.", ".#.", "###", "###", "###", "###", ".#.", ".#."}},
      {{1, 1, 3, 3}, {"...", ".#.", "..."}},
      {{0, 0, 2, 4}, {"#.", "#.", "#.", ".."}},
  };
  for (const auto& example : examples) {
    DrawingSurface surface(static_cast<int>(example.rows[0].size()), static_cast<int>(example.rows.size()));
    surface.FillEllipse(example.box, kInk);
    EXPECT_EQ(Drawing(surface), example.rows);
  }
}

TEST(Surface, FarPlacesAndHugeShapesEndAndStayInside) {
  DrawingSurface surface(20, 20);
  const Points far = {{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {3, 5}};
  for (int w : {0, 2, 9, 100000, INT_MAX}) surface.Polyline(far, w, 0x123456);
  surface.FillEllipse({INT_MAX - 5, INT_MAX - 5, INT_MAX, INT_MAX}, 0x123456);
  surface.FillEllipse({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, kInk);
  ExpectShape(
      surface, [](int, int) { return true; }, "inside a huge ellipse");
  // The tips of ellipses too long for the midpoint walk, each from its side, and one that ends beside the surface.
  for (const Rect box : {Rect{-19900, 0, 20100, 2000000}, Rect{-19901, -1999976, 20100, 24},
                         Rect{0, -19988, 2000000, 20012}, Rect{200 - (1 << 20), -19988, 200, 20013},
                         Rect{-2000000, -1000000, 20, 1000000}, Rect{200, -1000000, 2000000, 1000000}}) {
    const Exact w = Exact{box.right} - box.left, h = Exact{box.bottom} - box.top;
    DrawingSurface tip(200, 24);
    tip.FillEllipse(box, kInk);
    ExpectShape(
        tip,
        [&](int x, int y) {
          const Exact u = 2 * x + 1 - Exact{box.left} - box.right, v = 2 * y + 1 - Exact{box.top} - box.bottom;
          return u * u * h * h + v * v * w * w < w * w * h * h;
        },
        "tip from " + std::to_string(box.left) + ", " + std::to_string(box.top));
  }
}

TEST(Surface, EndHandsOverAndAFailedSurfaceTakesNoHarm) {
  const std::uint64_t blocks = LiveBlocks().blocks;
  {
    DrawingSurface surface(4, 4);
    EXPECT_TRUE(surface);
    const PackedDib dib = surface.End();
    EXPECT_FALSE(surface);
    EXPECT_EQ(LiveBlocks().locks, 0u);
    EXPECT_EQ(DibView(dib).Bits(), 24);
    surface.FillRect({0, 0, 4, 4}, 1);
    EXPECT_EQ(DibView(dib).GetPixel(0, 0), 0u);
    EXPECT_FALSE(surface.End());
    FailAllocation(1);
    DrawingSurface failed(4, 4);
    FailAllocation(0);
    EXPECT_FALSE(failed);
    failed.FillEllipse({0, 0, 4, 4}, 1);
    failed.Polyline(Points{{0, 0}, {3, 3}}, 3, 1);
    EXPECT_FALSE(failed.End());
    DrawingSurface abandoned(4, 4);
  }
  EXPECT_EQ(LiveBlocks().blocks, blocks);
  EXPECT_EQ(LiveBlocks().locks, 0u);
}

}  // namespace
}  // namespace glyphmotion
