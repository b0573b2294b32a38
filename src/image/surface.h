// SPDX-License-Identifier: MIT
// The drawing surface: aliased shapes drawn straight into a new 24-bit bitmap, the same on every platform.
//
// Rules for boundary pixels are those of GDI, found by experiment:
//   FillRect    [left, right) x [top, bottom).
//   Polygon     at each integer row y an edge counts if ymin <= y < ymax, its x taken exactly; fills ceil(xL) <= x <
//               ceil(xR).
//   Rectangle   [left, right - 1) x [top, bottom - 1).
//   Ellipse     the full box, by a midpoint walk; sides of 2 or less follow the Rectangle rule.
// Thin line one pixel a step of the major axis, the last point left out, minor coordinate ceil(v - 1/2).
//   Wide line   the union of round caps at every vertex (for a pen of 2 the whole square) and of bodies.
// Shapes are clipped to the surface; coordinates may have any value. Effects draw at three or four times the size and
// downsample.
#pragma once

#include <functional>
#include <span>

#include "image/packed_dib.h"

namespace glyphmotion {

struct Point {
  int x = 0, y = 0;
  friend constexpr bool operator==(const Point&, const Point&) = default;
};

/// The columns of one row of a shape: [left, right), empty when left >= right.
struct RowSpan {
  int left = 0, right = 0;
};
/// The rows [first, end) of a surface that a shape meets.
struct RowRange {
  int first = 0, end = 0;
};

/// What FillEllipse and FillRectangle would paint on a surface of `width` columns and as many rows as `rows` holds, for
/// callers that overlay shapes and write each pixel once. Sets the spans of those rows, clipped; the others are
/// unchanged.
RowRange EllipseRows(Rect box, int width, std::span<RowSpan> rows) noexcept;
RowRange RectangleRows(Rect box, int width, std::span<RowSpan> rows) noexcept;

/// The three shapes that make a wide line: a round cap at each end and the body between them.
enum LinePart { kStartCap, kEndCap, kBody, kLineParts };
/// Receives the columns that a part covers in one row.
using TakeSpan = std::function<void(LinePart part, int y, RowSpan span)>;

/// What Polyline would paint for a line with a pen wider than 1 on a surface of width x height, as clipped spans. The
/// parts are convex, so a row or column meets each of them in one span; they overlap.
void WideLineSpans(Point from, Point to, int penWidth, int width, int height, const TakeSpan& take);

enum class FillRule { Alternate, Winding };

/// Draws on a 24-bit bitmap that it owns until End. Colours are 0x00BBGGRR. Filled shapes have no outline (null pen).
class DrawingSurface {
 public:
  /// A black surface; empty when it could not be created (see BlankDib).
  DrawingSurface(int width, int height) noexcept;

  explicit operator bool() const noexcept { return static_cast<bool>(view_); }
  int Width() const noexcept { return view_.Width(); }
  int Height() const noexcept { return view_.Height(); }

  void FillRect(Rect rect, Colour colour) noexcept;
  void FillPolygon(std::span<const Point> points, Colour colour, FillRule rule = FillRule::Alternate) noexcept;
  void FillEllipse(Rect box, Colour colour) noexcept;
  void FillRectangle(Rect box, Colour colour) noexcept;
  /// Lines from point to point with a solid pen; width 0 and 1 give thin lines.
  void Polyline(std::span<const Point> points, int penWidth, Colour colour) noexcept;

  /// The drawing; the surface is empty afterwards.
  PackedDib End() noexcept;
  /// The same as a mask of its blue channel, for grey drawings: filters treat channels separately, so one of the three
  /// is enough.
  PackedDib EndAsMask() noexcept;

 private:
  PackedDib dib_;
  DibView view_;
};

}  // namespace glyphmotion
