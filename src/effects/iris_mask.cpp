// SPDX-License-Identifier: MIT
#include "effects/iris_mask.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/angles.h"
#include "image/filters.h"
#include "image/surface.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kScale = 4;
constexpr Colour kWhite = 0xFFFFFF;

// The sizes that all styles draw with, in surface pixels.
struct Grid {
  DrawingSurface& surface;
  int cell;
  double phase;
  double open = (1.0 - phase) * cell;

  int Width() const { return surface.Width(); }
  int Height() const { return surface.Height(); }
  int DiagonalPen() const { return static_cast<int>(std::sqrt(0.5) * open); }
  void Line(int pen, std::initializer_list<Point> points) const {
    surface.Polyline({points.begin(), points.size()}, pen, kWhite);
  }
};

void DrawSquares(const Grid& grid) {
  const int inset = static_cast<int>(grid.cell * grid.phase) / 2, side = grid.cell - 2 * inset;
  for (int y = inset; y - inset < grid.Height(); y += grid.cell) {
    for (int x = inset; x - inset < grid.Width(); x += grid.cell) {
      grid.surface.FillRect({x, y, x + side, y + side}, kWhite);
    }
  }
}

// Calls draw(x, y) with the centre of each cell that begins on the surface.
template <typename Draw>
void ForEachCentre(const Grid& grid, Draw draw) {
  for (int y = 0; y < grid.Height(); y += grid.cell) {
    for (int x = 0; x < grid.Width() && !EndRequested(); x += grid.cell) draw(x + grid.cell / 2, y + grid.cell / 2);
  }
}

void DrawDiamonds(const Grid& grid) {
  const double half = grid.open * 0.5;
  const int r = static_cast<int>(std::sqrt(2.0 * (half * half)));
  ForEachCentre(grid, [&](int x, int y) {
    const Point corners[] = {{x - r, y}, {x, y - r}, {x + r, y}, {x, y + r}};
    grid.surface.FillPolygon(corners, kWhite);
  });
}

void DrawCircles(const Grid& grid) {
  const double half = std::cos(Radians(grid.phase * 90.0)) * grid.cell * 0.5;
  const int r = static_cast<int>(std::sqrt(2.0 * (half * half)));
  ForEachCentre(grid, [&](int x, int y) { grid.surface.FillEllipse({x - r, y - r, x + r, y + r}, kWhite); });
}

void DrawHorizontalBlind(const Grid& grid) {
  const int pen = static_cast<int>(grid.open);
  for (int y = 0; y < grid.Height(); y += grid.cell) grid.Line(pen, {{0, y}, {grid.Width(), y}});
}

void DrawVerticalBlind(const Grid& grid) {
  const int pen = static_cast<int>(grid.open);
  for (int x = 0; x < grid.Width(); x += grid.cell) grid.Line(pen, {{x, 0}, {x, grid.Height()}});
}

// Calls draw(x) for the starts of slanted lines, which begin far enough outside to cover the corners.
template <typename Draw>
void ForEachStart(const Grid& grid, Draw draw) {
  for (int x = -grid.Height(); x < grid.Width() + grid.Height(); x += grid.cell) draw(x);
}

void DrawDiagonalLeft(const Grid& grid) {
  const int pen = grid.DiagonalPen(), h = grid.Height();
  ForEachStart(grid, [&](int x) { grid.Line(pen, {{x, 0}, {x + h, h}}); });
}

void DrawDiagonalRight(const Grid& grid) {
  const int pen = grid.DiagonalPen(), h = grid.Height();
  ForEachStart(grid, [&](int x) { grid.Line(pen, {{x + h, 0}, {x, h}}); });
}

void DrawChevronLeft(const Grid& grid) {
  const int pen = grid.DiagonalPen(), height = grid.Height(), h = height / 2;
  ForEachStart(grid, [&](int start) {
    const int x = start + height;
    grid.Line(pen, {{x + h - height, 0}, {x, h}, {x - height, h + height}});
  });
}

void DrawChevronRight(const Grid& grid) {
  const int pen = grid.DiagonalPen(), height = grid.Height(), h = height / 2;
  ForEachStart(grid, [&](int x) { grid.Line(pen, {{x, 0}, {x + h, h}, {x, height}}); });
}

constexpr void (*kStyles[])(const Grid& grid) = {DrawSquares,         DrawDiamonds,      DrawCircles,
                                                 DrawHorizontalBlind, DrawVerticalBlind, DrawDiagonalLeft,
                                                 DrawDiagonalRight,   DrawChevronLeft,   DrawChevronRight};
static_assert(std::size(kStyles) == kIrisNone);

PackedDib WhiteMask(int width, int height) {
  PackedDib mask = BlankMask(width, height);
  const DibView view(mask);
  if (!view) return {};
  for (int y = 0; y < height; ++y) std::memset(view.Row(y), 0xFF, static_cast<std::size_t>(width));
  return mask;
}

void MixRow(const std::uint8_t* first, const std::uint8_t* second, const std::uint8_t* mask, int width,
            std::uint8_t* out) {
  for (int x = 0; x < width; ++x, first += 3, second += 3, out += 3) {
    for (int k = 0; k < 3; ++k) out[k] = BlendChannel(second[k], first[k], mask[x]);
  }
}

bool SameSize(const DibView& a, const DibView& b) { return a.Width() == b.Width() && a.Height() == b.Height(); }

}  // namespace

PackedDib IrisMask(int width, int height, int style, int size, double phase) noexcept {
  // Reducing white gives white.
  if (phase == 0.0) return WhiteMask(width, height);
  if (style < 0 || style >= kIrisNone) return BlankMask(width, height);
  if (!DibSize(width, height, 24) || size < 1) return {};
  DrawingSurface surface(width * kScale, height * kScale);
  if (!surface) return {};
  kStyles[style](Grid{surface, size * kScale, phase});
  return ResampleByPercent(surface.EndAsMask(), 100 / kScale, 100 / kScale);
}

PackedDib MixThroughMask(const PackedDib& first, const PackedDib& second, const PackedDib& mask) noexcept {
  const DibView a(first), b(second), levels(mask);
  if (!a || !b || !levels || !SameSize(a, levels) || !SameSize(b, levels)) return {};
  PackedDib mixed = BlankDib(levels.Width(), levels.Height(), nullptr, 24);
  const DibView out(mixed);
  if (!out) return {};
  for (int y = 0; y < out.Height() && !EndRequested(); ++y)
    MixRow(a.Row(y), b.Row(y), levels.Row(y), out.Width(), out.Row(y));
  return mixed;
}

}  // namespace glyphmotion
