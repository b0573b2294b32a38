// SPDX-License-Identifier: MIT
// Shapes against twins that ask, pixel by pixel and in exact numbers, whether the rule covers it.
#include "image/surface.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
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

bool ThinLineCovers(Point a, Point b, int x, int y) {
  Exact dx = Exact{b.x} - a.x, dy = Exact{b.y} - a.y, u = Exact{x} - a.x, v = Exact{y} - a.y;
  if ((dx < 0 ? -dx : dx) < (dy < 0 ? -dy : dy)) std::swap(dx, dy), std::swap(u, v);
  const Exact step = dx < 0 ? -u : u, steps = dx < 0 ? -dx : dx;
  if (step < 0 || step >= steps) return false;
  // v is the whole number in [t - 1/2, t + 1/2) for t = dy * step / steps.
  return 2 * v * steps >= 2 * dy * step - steps && 2 * v * steps < 2 * dy * step + steps;
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

TEST(Surface, NeighbouringPolygonsNeitherOverlapNorLeaveGaps) {
  DrawingSurface first(50, 50), second(50, 50);
  const Point a{3, 2}, b{47, 9}, c{31, 48}, d{5, 33};
  first.FillPolygon(Points{a, b, c}, 1);
  second.FillPolygon(Points{a, c, d}, 1);
  DrawingSurface both(50, 50);
  both.FillPolygon(Points{a, b, c, d}, 1);
  const PackedDib x = first.End(), y = second.End(), z = both.End();
  for (int i = 0; i < 2500; ++i) {
    const int px = i % 50, py = i / 50;
    ASSERT_EQ(DibView(x).GetPixel(px, py) + DibView(y).GetPixel(px, py), DibView(z).GetPixel(px, py))
        << px << " " << py;
  }
}

TEST(Surface, ThinLinesLeaveOutTheirLastPoint) {
  for (int round = 0; round < 1500; ++round) {
    const Points points = RandomPoints(Random(1, 4), 40, round % 3 == 0);
    DrawingSurface surface(37, 29);
    surface.Polyline(points, round % 2, kInk);
    ExpectShape(
        surface,
        [&](int x, int y) {
          for (std::size_t i = 1; i < points.size(); ++i) {
            if (ThinLineCovers(points[i - 1], points[i], x, y)) return true;
          }
          return false;
        },
        Describe(points));
  }
}

TEST(Surface, RectanglesAreHalfOpenAndThoseOfThePenLoseOneMore) {
  for (int round = 0; round < 600; ++round) {
    const bool far = round % 2;
    const Rect r = {RandomPlace(20, far), RandomPlace(20, far), RandomPlace(20, far), RandomPlace(20, far)};
    DrawingSurface filled(19, 23), drawn(19, 23);
    filled.FillRect(r, kInk);
    ExpectShape(
        filled, [&](int x, int y) { return x >= r.left && x < r.right && y >= r.top && y < r.bottom; }, "FillRect");
    drawn.FillRectangle(r, kInk);
    const auto [left, right] = std::minmax(r.left, r.right);
    const auto [top, bottom] = std::minmax(r.top, r.bottom);
    ExpectShape(
        drawn,
        [&, l = left, r2 = right, t = top, b = bottom](int x, int y) {
          return x >= l && x < Exact{r2} - 1 && y >= t && y < Exact{b} - 1;
        },
        "FillRectangle");
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

// Every row of the box has pixels, mirrored both ways, and no pixel is a whole one away from the true ellipse.
TEST(Surface, EllipsesFillTheirBoxAndHugTheEquation) {
  for (int round = 0; round < 300; ++round) {
    const int width = Random(3, 90), height = Random(3, 90);
    DrawingSurface surface(width, height);
    surface.FillEllipse({0, 0, width, height}, kInk);
    const auto rows = Drawing(surface);
    for (int y = 0; y < height; ++y) {
      const std::string& row = rows[static_cast<std::size_t>(y)];
      ASSERT_EQ(row, rows[static_cast<std::size_t>(height - 1 - y)]);
      ASSERT_EQ(row, std::string(row.rbegin(), row.rend()));
      ASSERT_NE(row.find('#'), std::string::npos) << width << "x" << height << " row " << y;
      for (int x = 0; x < width; ++x) {
        const auto level = [&](double grow) {
          const double u = (x + 0.5 - width / 2.0) / (width / 2.0 + grow),
                       v = (y + 0.5 - height / 2.0) / (height / 2.0 + grow);
          return u * u + v * v;
        };
        const bool inside = row[static_cast<std::size_t>(x)] == '#';
        const bool tip = width <= 4 || height <= 4;
        ASSERT_TRUE(inside ? level(1.0) <= 1.0 : tip || level(-1.0) >= 1.0)
            << width << "x" << height << " at " << x << ", " << y;
      }
    }
    ASSERT_EQ(rows[static_cast<std::size_t>(height / 2)], std::string(static_cast<std::size_t>(width), '#'));
  }
}

bool AnyBodyCovers(const Points& points, int w, int x, int y) {
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Point p = points[i - 1], q = points[i];
    const int dx = q.x - p.x, dy = q.y - p.y;
    if (dx == 0 || dy == 0) {
      const int px = dx ? std::min(p.x, q.x) : p.x - w / 2, py = dy ? std::min(p.y, q.y) : p.y - w / 2;
      if (points[i] == points[i - 1]) continue;
      if (x >= px && x < (dx ? std::max(p.x, q.x) : px + w) && y >= py && y < (dy ? std::max(p.y, q.y) : py + w))
        return true;
      continue;
    }
    const double length = std::sqrt(1.0 * dx * dx + 1.0 * dy * dy), wx = w * std::abs(dy) / length,
                 wy = w * std::abs(dx) / length;
    const auto round = [](double v) { return static_cast<int>(std::floor(v + 0.5)); };
    Point n{round(wx / 2), round(wy / 2)}, d{round((wx + 1) / 2), round((wy + 1) / 2)};
    if (dx < 0) n.y = -n.y, d.y = -d.y;
    if (dy < 0) {
      std::swap(n, d);
      n.x = -n.x, d.x = -d.x;
    }
    const Points body = {
        {p.x - n.x, p.y + n.y}, {p.x + d.x, p.y - d.y}, {q.x + d.x, q.y - d.y}, {q.x - n.x, q.y + n.y}};
    if (PolygonCovers(body, FillRule::Alternate, x, y)) return true;
  }
  return false;
}

TEST(Surface, WideLinesAreCapsAndBodies) {
  for (int round = 0; round < 800; ++round) {
    Points points = RandomPoints(Random(2, 5), 40, false);
    if (round % 4 == 0) points[1].x = points[0].x;
    if (round % 4 == 1) points[1].y = points[0].y;
    if (round % 16 == 2) points[1] = points[0];
    const int w = Random(2, 17);
    DrawingSurface surface(43, 41), caps(43, 41);
    surface.Polyline(points, w, kInk);
    for (Point p : points) {
      const Rect box{p.x - w / 2, p.y - w / 2, p.x - w / 2 + w, p.y - w / 2 + w};
      w == 2 ? caps.FillRect(box, kInk) : caps.FillEllipse(box, kInk);
    }
    const auto cap = Drawing(caps);
    ExpectShape(
        surface,
        [&](int x, int y) {
          return cap[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#' || AnyBodyCovers(points, w, x, y);
        },
        Describe(points) + "width " + std::to_string(w));
  }
}

// Whatever the place of a shape, a surface shows the part of it that it covers.
TEST(Surface, ClippingCutsAndNothingElse) {
  for (int round = 0; round < 200; ++round) {
    const Points points = RandomPoints(3, 60, false);
    const int w = Random(0, 30), cutX = Random(0, 80), cutY = Random(0, 80);
    const auto draw = [&](DrawingSurface& surface, int x, int y) {
      Points moved;
      for (Point p : points) moved.push_back({p.x + 30 - x, p.y + 30 - y});
      surface.FillEllipse({moved[0].x, moved[0].y, moved[1].x, moved[1].y}, kInk);
      surface.Polyline(moved, w, 0xABCDEF);
    };
    DrawingSurface whole(120, 120), part(31, 23);
    draw(whole, 0, 0);
    draw(part, cutX, cutY);
    const PackedDib all = whole.End(), piece = part.End();
    const DibView big(all), small(piece);
    for (int y = 0; y < 23; ++y) {
      for (int x = 0; x < 31; ++x)
        ASSERT_EQ(small.GetPixel(x, y), big.GetPixel(x + cutX, y + cutY)) << Describe(points);
    }
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
