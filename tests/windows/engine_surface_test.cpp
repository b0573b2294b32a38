// SPDX-License-Identifier: MIT
// The drawing surface against the system's own shapes, pixel by pixel.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "image/surface.h"

namespace glyphmotion {
namespace {

constexpr int kWidth = 120, kHeight = 90;
constexpr Colour kInk = 0x332211;
constexpr int kRounds = 400;

class AgainstGdi : public testing::Test {
 protected:
  void SetUp() override {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = kWidth;
    info.bmiHeader.biHeight = -kHeight;  // top down
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    context_ = CreateCompatibleDC(nullptr);
    bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &pixels_, nullptr, 0);
    ASSERT_NE(bitmap_, nullptr);
    before_ = SelectObject(context_, bitmap_);
    brush_ = CreateSolidBrush(kInk);
  }
  void TearDown() override {
    SelectObject(context_, before_);
    SelectObject(context_, GetStockObject(WHITE_BRUSH));
    DeleteObject(brush_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
  }

  int Random(int low, int high) { return low + static_cast<int>(rng_() % static_cast<unsigned>(high - low + 1)); }
  Point Place() { return {Random(-40, kWidth + 40), Random(-40, kHeight + 40)}; }
  std::vector<Point> Places(int count) {
    std::vector<Point> points;
    for (int i = 0; i < count; ++i) points.push_back(Place());
    return points;
  }
  Rect Box() {
    const Point corner = Place();
    return {corner.x, corner.y, corner.x + Random(0, 110), corner.y + Random(0, 110)};
  }

  /// Begins a drawing of the system's with the brush and no pen.
  HDC Shapes() {
    PatBlt(context_, 0, 0, kWidth, kHeight, BLACKNESS);
    SelectObject(context_, brush_);
    SelectObject(context_, GetStockObject(NULL_PEN));
    return context_;
  }
  /// Draws lines with a pen of the system's.
  void Lines(const std::vector<Point>& points, int width) {
    Shapes();
    const HPEN pen = CreatePen(PS_SOLID, width, kInk);
    const HGDIOBJ old = SelectObject(context_, pen);
    MoveToEx(context_, points[0].x, points[0].y, nullptr);
    if (points.size() == 2) {
      LineTo(context_, points[1].x, points[1].y);
    } else {
      ::Polyline(context_, SystemPoints(points).data(), static_cast<int>(points.size()));
    }
    SelectObject(context_, old);
    DeleteObject(pen);
  }
  static std::vector<POINT> SystemPoints(const std::vector<Point>& points) {
    std::vector<POINT> system;
    for (const Point p : points) system.push_back({p.x, p.y});
    return system;
  }

  /// Pixels in which the two drawings differ.
  int Differences(DrawingSurface& surface) {
    GdiFlush();
    const PackedDib dib = surface.End();
    const DibView view(dib);
    const auto* system = static_cast<const std::uint32_t*>(pixels_);
    int count = 0;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        count += (view.GetPixel(x, y) != 0) != ((system[y * kWidth + x] & 0xFFFFFF) != 0);
      }
    }
    return count;
  }

 private:
  std::mt19937 rng_{20};
  HDC context_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  HBRUSH brush_ = nullptr;
  void* pixels_ = nullptr;
};

std::string Describe(const std::vector<Point>& points) {
  std::ostringstream text;
  for (const Point p : points) text << "(" << p.x << "," << p.y << ") ";
  return text.str();
}
std::string Describe(const Rect& r) { return Describe({{r.left, r.top}, {r.right, r.bottom}}); }

TEST_F(AgainstGdi, Polygons) {
  for (int round = 0; round < kRounds; ++round) {
    const std::vector<Point> points = Places(Random(3, 9));
    const bool winding = round % 2;
    SetPolyFillMode(Shapes(), winding ? WINDING : ALTERNATE);
    Polygon(Shapes(), SystemPoints(points).data(), static_cast<int>(points.size()));
    DrawingSurface surface(kWidth, kHeight);
    surface.FillPolygon(points, kInk, winding ? FillRule::Winding : FillRule::Alternate);
    ASSERT_EQ(Differences(surface), 0) << Describe(points) << winding;
  }
}

TEST_F(AgainstGdi, Rectangles) {
  for (int round = 0; round < kRounds; ++round) {
    const Rect box = Box();
    const RECT system{box.left, box.top, box.right, box.bottom};
    DrawingSurface filled(kWidth, kHeight), drawn(kWidth, kHeight);
    const HBRUSH brush = CreateSolidBrush(kInk);
    FillRect(Shapes(), &system, brush);
    DeleteObject(brush);
    filled.FillRect(box, kInk);
    ASSERT_EQ(Differences(filled), 0) << "FillRect " << Describe(box);
    Rectangle(Shapes(), box.left, box.top, box.right, box.bottom);
    drawn.FillRectangle(box, kInk);
    ASSERT_EQ(Differences(drawn), 0) << "Rectangle " << Describe(box);
  }
}

// But for small ones that are taller than wide, of which Wine 8 leaves the first rows as its memory was.
TEST_F(AgainstGdi, Ellipses) {
  constexpr int kSmall = 12;
  for (int round = 0; round < 4 * kRounds; ++round) {
    Rect box = Box();
    const int width = box.right - box.left;
    if (round % 3 == 0) box.bottom = box.top + width;
    if (width <= kSmall) box.bottom = std::min(box.bottom, box.top + 3 * width / 2);
    Ellipse(Shapes(), box.left, box.top, box.right, box.bottom);
    DrawingSurface surface(kWidth, kHeight);
    surface.FillEllipse(box, kInk);
    ASSERT_EQ(Differences(surface), 0) << Describe(box);
  }
}

TEST_F(AgainstGdi, ThinLines) {
  for (int round = 0; round < kRounds; ++round) {
    const std::vector<Point> points = Places(round % 2 ? 2 : Random(3, 6));
    Lines(points, round % 4 / 2);
    DrawingSurface surface(kWidth, kHeight);
    surface.Polyline(points, round % 4 / 2, kInk);
    ASSERT_EQ(Differences(surface), 0) << Describe(points);
  }
}

TEST_F(AgainstGdi, WideLines) {
  for (int round = 0; round < kRounds; ++round) {
    std::vector<Point> points = Places(round % 2 ? 2 : Random(3, 5));
    if (round % 8 == 1) points[1].x = points[0].x;
    if (round % 8 == 3) points[1].y = points[0].y;
    const int width = Random(2, 24);
    Lines(points, width);
    DrawingSurface surface(kWidth, kHeight);
    surface.Polyline(points, width, kInk);
    ASSERT_EQ(Differences(surface), 0) << Describe(points) << "width " << width;
  }
}

}  // namespace
}  // namespace glyphmotion
