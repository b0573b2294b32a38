// SPDX-License-Identifier: MIT
// The drawing surface: every shape becomes spans of a row, clipped and filled in FillSpan. Coordinates may have any
// value of int, so differences take 33 bits and their products up to 64. Slopes are kept as a whole part and a
// remainder (Slope), which is exact and cannot overflow.
#include "image/surface.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

using Wide = std::int64_t;

// A rectangle whose sides may lie a pen's width beyond the range of int.
struct WideRect {
  Wide left, top, right, bottom;
  Wide Width() const { return right - left; }
  Wide Height() const { return bottom - top; }
};

// The target of a fill: a bitmap and 16 pixels of the colour.
class Canvas {
 public:
  Canvas(const DibView& view, Colour colour) : view_(view), width_(view.Width()), height_(view.Height()) {
    for (std::size_t i = 0; i < sizeof(pattern_); i += 3) {
      pattern_[i] = static_cast<std::uint8_t>(BlueOf(colour));
      pattern_[i + 1] = static_cast<std::uint8_t>(GreenOf(colour));
      pattern_[i + 2] = static_cast<std::uint8_t>(RedOf(colour));
    }
  }
  int Width() const { return width_; }
  int Height() const { return height_; }

  // Pixels left to right - 1 of row y.
  void FillSpan(Wide y, Wide left, Wide right) const {
    if (y < 0 || y >= height_) return;
    left = std::max<Wide>(left, 0);
    right = std::min<Wide>(right, width_);
    if (left >= right) return;
    std::uint8_t* to = view_.Row(static_cast<int>(y)) + left * 3;
    const auto bytes = static_cast<std::size_t>(right - left) * 3;
    if (bytes < 3 * 16) return FillShort(to, bytes);
    for (std::size_t i = 0; i + 48 <= bytes; i += 48) std::memcpy(to + i, pattern_, 48);
    std::memcpy(to + bytes - 48, pattern_, 48);
  }

  void FillRect(const WideRect& rect) const {
    const Wide end = std::min<Wide>(rect.bottom, height_);
    for (Wide y = std::max<Wide>(rect.top, 0); y < end; ++y) FillSpan(y, rect.left, rect.right);
  }

  // A pixel inside the bitmap.
  void Put(Wide x, Wide y) const { std::memcpy(view_.Row(static_cast<int>(y)) + x * 3, pattern_, 3); }

 private:
  // Fills up to 15 pixels as two pieces of a fixed size that may overlap: most spans of thin shapes are this short.
  void FillShort(std::uint8_t* to, std::size_t bytes) const {
    if (bytes >= 24) {
      std::memcpy(to, pattern_, 24);
      std::memcpy(to + bytes - 24, pattern_, 24);
    } else if (bytes >= 12) {
      std::memcpy(to, pattern_, 12);
      std::memcpy(to + bytes - 12, pattern_, 12);
    } else {
      for (std::size_t i = 0; i < bytes; i += 3) std::memcpy(to + i, pattern_, 3);
    }
  }

  const DibView& view_;
  int width_, height_;
  std::uint8_t pattern_[48];
};

// The value start + k * rise / run for k = first, first + 1, ..., held exactly as floor + remainder / run.
struct Slope {
  Wide floor, remainder, wholeStep, remainderStep, run;

  // 0 <= first <= run < 2^33 and |rise| < 2^33, both from differences of ints; run > 0.
  Slope(Wide start, Wide rise, Wide slopeRun, Wide first) : run(slopeRun) {
    wholeStep = rise / run;
    remainderStep = rise % run;
    if (remainderStep < 0) {
      remainderStep += run;
      --wholeStep;
    }
    // first <= run < 2^32 and remainderStep < run: the product takes 64 bits, all of them.
    const std::uint64_t product = static_cast<std::uint64_t>(first) * static_cast<std::uint64_t>(remainderStep);
    floor = start + first * wholeStep + static_cast<Wide>(product / static_cast<std::uint64_t>(run));
    remainder = static_cast<Wide>(product % static_cast<std::uint64_t>(run));
  }
  void Advance() {
    floor += wholeStep;
    remainder += remainderStep;
    if (remainder >= run) {
      remainder -= run;
      ++floor;
    }
  }
  Wide Ceiling() const { return floor + (remainder > 0); }
  // ceil(value - 1/2): the nearest whole number, halves rounded down.
  Wide Nearest() const { return floor + (2 * remainder > run); }
};

// Polygons ------------------------------------------------------------------------------------------------------------

struct Edge {
  Slope x;
  int firstRow, endRow;
  int direction;  // +1 going down, -1 going up
};

struct Crossing {
  int x, direction;
};

// An edge of the polygon that crosses at least one row of the surface, from the first such row on.
bool MakeEdge(Point from, Point to, int height, Edge* edge) {
  const int direction = from.y < to.y ? 1 : -1;
  if (direction < 0) std::swap(from, to);
  const int firstRow = std::max(from.y, 0), endRow = std::min(to.y, height);
  if (firstRow >= endRow) return false;
  const Slope x(from.x, Wide{to.x} - from.x, Wide{to.y} - from.y, Wide{firstRow} - from.y);
  new (edge) Edge{x, firstRow, endRow, direction};
  return true;
}

template <typename Canvas>
void FillBetween(const Canvas& canvas, int y, const Crossing* crossings, int count, FillRule rule) {
  if (rule == FillRule::Alternate) {
    for (int i = 0; i + 1 < count; i += 2) canvas.FillSpan(y, crossings[i].x, crossings[i + 1].x);
    return;
  }
  int winding = 0, left = 0;
  for (int i = 0; i < count; ++i) {
    if (winding == 0) left = crossings[i].x;
    winding += crossings[i].direction;
    if (winding == 0) canvas.FillSpan(y, left, crossings[i].x);
  }
}

// Edges and crossings of one polygon, on the stack for the usual small one. The storage is raw bytes because default
// constructors would clear it needlessly; edges are trivially destructible.
class EdgeTable {
 public:
  explicit EdgeTable(std::size_t capacity) {
    if (capacity > kSmall) large_.reset(new (std::nothrow) std::byte[capacity * kBytes]);
    std::byte* base = capacity > kSmall ? large_.get() : small_;
    edges = reinterpret_cast<Edge*>(base);
    if (base) crossings = reinterpret_cast<Crossing*>(base + capacity * sizeof(Edge));
  }
  Edge* edges = nullptr;  // null when out of memory
  Crossing* crossings = nullptr;

 private:
  static constexpr std::size_t kSmall = 32, kBytes = sizeof(Edge) + sizeof(Crossing);
  alignas(16) std::byte small_[kSmall * kBytes];
  std::unique_ptr<std::byte[]> large_;
};

template <typename Canvas>
void FillPolygonOn(const Canvas& canvas, std::span<const Point> points, FillRule rule) {
  if (points.size() < 2) return;
  EdgeTable table(points.size());
  Edge* const edges = table.edges;
  if (!edges) return;
  int count = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    count += MakeEdge(points[i], points[i + 1 < points.size() ? i + 1 : 0], canvas.Height(), edges + count);
  }
  std::sort(edges, edges + count, [](const Edge& a, const Edge& b) { return a.firstRow < b.firstRow; });

  // Edges [0, active) cross row y and are kept sorted by their crossings, an order that seldom changes. Edges from
  // `next` on begin later; those in between have ended.
  int active = 0, next = 0;
  for (int y = count ? edges[0].firstRow : 0; y < canvas.Height() && (active || next < count); ++y) {
    if (EndRequested()) return;
    if (!active) y = std::max(y, edges[next].firstRow);
    while (next < count && edges[next].firstRow == y) edges[active++] = edges[next++];
    for (int i = 0; i < active; ++i) {
      const Wide x = std::clamp<Wide>(edges[i].x.Ceiling(), 0, canvas.Width());
      table.crossings[i] = {static_cast<int>(x), edges[i].direction};
      for (int at = i; at > 0 && table.crossings[at - 1].x > table.crossings[at].x; --at) {
        std::swap(table.crossings[at - 1], table.crossings[at]);
        std::swap(edges[at - 1], edges[at]);
      }
    }
    FillBetween(canvas, y, table.crossings, active, rule);
    int kept = 0;
    for (int i = 0; i < active; ++i) {
      if (edges[i].endRow <= y + 1) continue;
      edges[i].x.Advance();
      if (kept != i) edges[kept] = edges[i];
      ++kept;
    }
    active = kept;
  }
}

// Records a shape's spans instead of painting them.
class SpanNotes {
 public:
  SpanNotes(int width, std::span<RowSpan> rows) : rows_(rows), width_(width), height_(static_cast<int>(rows.size())) {}
  int Width() const { return width_; }
  int Height() const { return height_; }
  void FillSpan(Wide y, Wide left, Wide right) const {
    if (y < 0 || y >= height_) return;
    rows_[static_cast<std::size_t>(y)] = {static_cast<int>(std::clamp<Wide>(left, 0, width_)),
                                          static_cast<int>(std::clamp<Wide>(right, 0, width_))};
  }
  void FillRect(const WideRect& rect) const {
    const Wide end = std::min<Wide>(rect.bottom, height_);
    for (Wide y = std::max<Wide>(rect.top, 0); y < end; ++y) FillSpan(y, rect.left, rect.right);
  }

 private:
  std::span<RowSpan> rows_;
  int width_, height_;
};

// Passes on a shape's spans, clipped.
class SpanTaker {
 public:
  SpanTaker(LinePart part, int width, int height, const TakeSpan& take)
      : take_(take), part_(part), width_(width), height_(height) {}
  int Width() const { return width_; }
  int Height() const { return height_; }
  void FillSpan(Wide y, Wide left, Wide right) const {
    left = std::max<Wide>(left, 0);
    right = std::min<Wide>(right, width_);
    if (y < 0 || y >= height_ || left >= right) return;
    take_(part_, static_cast<int>(y), {static_cast<int>(left), static_cast<int>(right)});
  }
  void FillRect(const WideRect& rect) const {
    const Wide end = std::min<Wide>(rect.bottom, height_);
    for (Wide y = std::max<Wide>(rect.top, 0); y < end; ++y) FillSpan(y, rect.left, rect.right);
  }

 private:
  const TakeSpan& take_;
  LinePart part_;
  int width_, height_;
};

// Ellipses ------------------------------------------------------------------------------------------------------------

// Boxes with longer sides would overflow the midpoint walk; at that size single pixels do not matter.
constexpr Wide kLongestWalk = Wide{1} << 19;

// The rows of a huge ellipse that meet the surface, from its equation.
template <typename Canvas>
void FillHugeEllipse(const Canvas& canvas, const WideRect& box) {
  const double a = static_cast<double>(box.Width()) / 2.0, b = static_cast<double>(box.Height()) / 2.0;
  const double centreX = static_cast<double>(box.left) + a, centreY = static_cast<double>(box.top) + b;
  const Wide end = std::min<Wide>(box.bottom, canvas.Height());
  for (Wide y = std::max<Wide>(box.top, 0); y < end; ++y) {
    const double v = (static_cast<double>(y) + 0.5 - centreY) / b;
    const double half = a * std::sqrt(std::max(0.0, 1.0 - v * v));
    canvas.FillSpan(y, static_cast<Wide>(std::ceil(centreX - half - 0.5)),
                    static_cast<Wide>(std::ceil(centreX + half - 0.5)));
  }
}

// The integer midpoint walk of Zingl, "A Rasterizing Algorithm for Drawing Curves", from the middle row outwards. Rows
// of a narrow tip that the walk does not reach, or reaches with an empty span, get the middle columns.
template <typename Canvas>
void FillEllipseOn(const Canvas& canvas, const WideRect& box) {
  const Wide width = box.Width(), height = box.Height();
  if (box.left >= canvas.Width() || box.right <= 0 || box.top >= canvas.Height() || box.bottom <= 0) return;
  if (width <= 2 || height <= 2) return canvas.FillRect({box.left, box.top, box.right - 1, box.bottom - 1});
  if (width > kLongestWalk || height > kLongestWalk) return FillHugeEllipse(canvas, box);
  const Wide a = width - 1, b = height - 1, a2 = a * a, b2 = b * b, odd = b & 1;
  const auto fillPair = [&](Wide y, Wide inset) {
    inset = std::min(inset, a / 2);
    canvas.FillSpan(box.top + y, box.left + inset, box.right - inset);
    canvas.FillSpan(box.top + b - y, box.left + inset, box.right - inset);
  };
  Wide dx = 4 * b2 * (1 - a), dy = 4 * a2 * (1 + odd), error = dx + dy + a2 * odd, x = 0, y = height / 2;
  fillPair(y, 0);
  while (x <= width / 2) {
    const Wide twice = 2 * error;
    if (twice >= dx) {
      ++x;
      dx += 8 * b2;
      error += dx;
    }
    if (twice <= dy) {
      ++y;
      dy += 8 * a2;
      error += dy;
      if (y <= b) fillPair(y, x);
    }
  }
  while (++y <= b) fillPair(y, a / 2);
}

// Lines ---------------------------------------------------------------------------------------------------------------

// The steps k of a walk from `start` in `direction` that lie in [0, side): [first, end).
std::pair<Wide, Wide> ClipSteps(Wide start, int direction, Wide steps, Wide side) {
  const Wide first = direction > 0 ? -start : start - (side - 1);
  const Wide end = direction > 0 ? side - start : start + 1;
  return {std::max<Wide>(first, 0), std::min(end, steps)};
}

void ThinLine(const Canvas& canvas, Point from, Point to) {
  const Wide dx = Wide{to.x} - from.x, dy = Wide{to.y} - from.y;
  const bool across = std::abs(dx) >= std::abs(dy);
  const Wide steps = across ? std::abs(dx) : std::abs(dy);
  if (steps == 0) return;
  const int direction = (across ? dx : dy) > 0 ? 1 : -1;
  const Wide start = across ? from.x : from.y;
  const Wide otherSide = across ? canvas.Height() : canvas.Width();
  const auto [first, end] = ClipSteps(start, direction, steps, across ? canvas.Width() : canvas.Height());
  if (first >= end) return;
  Slope minor(across ? from.y : from.x, across ? dy : dx, steps, first);
  for (Wide k = first; k < end; ++k, minor.Advance()) {
    const Wide major = start + direction * k, other = minor.Nearest();
    if (other < 0 || other >= otherSide) continue;
    across ? canvas.Put(major, other) : canvas.Put(other, major);
  }
}

int Saturate(Wide v) {
  return static_cast<int>(std::clamp<Wide>(v, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

// The quadrilateral body of a wide line that is neither horizontal nor vertical.
template <typename Canvas>
void SlantedBody(const Canvas& canvas, Point from, Point to, int width) {
  struct Offset {
    Wide x, y;
  };
  const double dx = static_cast<double>(to.x) - from.x, dy = static_cast<double>(to.y) - from.y;
  const double length = std::sqrt(dx * dx + dy * dy);
  const double widthX = width * std::abs(dy) / length, widthY = width * std::abs(dx) / length;
  const auto round = [](double v) { return static_cast<Wide>(std::floor(v + 0.5)); };
  Offset narrow = {round(widthX / 2.0), round(widthY / 2.0)};
  Offset wide = {round((widthX + 1.0) / 2.0), round((widthY + 1.0) / 2.0)};
  if (dx < 0) {
    narrow.y = -narrow.y;
    wide.y = -wide.y;
  }
  if (dy < 0) {
    std::swap(narrow, wide);
    narrow.x = -narrow.x;
    wide.x = -wide.x;
  }
  const auto at = [](Point p, Wide x, Wide y) { return Point{Saturate(p.x + x), Saturate(p.y + y)}; };
  const Point corners[] = {at(from, -narrow.x, narrow.y), at(from, wide.x, -wide.y), at(to, wide.x, -wide.y),
                           at(to, -narrow.x, narrow.y)};
  FillPolygonOn(canvas, corners, FillRule::Alternate);
}

template <typename Canvas>
void WideBody(const Canvas& canvas, Point from, Point to, int width) {
  const Wide before = width / 2, after = width - before;
  if (from.y == to.y) {
    canvas.FillRect({std::min(from.x, to.x), from.y - before, std::max(from.x, to.x), from.y + after});
  } else if (from.x == to.x) {
    canvas.FillRect({from.x - before, std::min(from.y, to.y), from.x + after, std::max(from.y, to.y)});
  } else {
    SlantedBody(canvas, from, to, width);
  }
}

template <typename Canvas>
void RoundCap(const Canvas& canvas, Point at, int width) {
  const Wide left = Wide{at.x} - width / 2, top = Wide{at.y} - width / 2;
  const WideRect box{left, top, left + width, top + width};
  width == 2 ? canvas.FillRect(box) : FillEllipseOn(canvas, box);
}

// Boxes with swapped corners are the same boxes.
WideRect Ordered(const Rect& box) {
  const auto [left, right] = std::minmax(box.left, box.right);
  const auto [top, bottom] = std::minmax(box.top, box.bottom);
  return {left, top, right, bottom};
}

// Empties the rows of a box that lie on the surface.
RowRange ClearRows(const WideRect& box, std::span<RowSpan> rows) {
  const auto height = static_cast<Wide>(rows.size());
  const Wide first = std::clamp<Wide>(box.top, 0, height), end = std::clamp<Wide>(box.bottom, first, height);
  for (Wide y = first; y < end; ++y) rows[static_cast<std::size_t>(y)] = {};
  return {static_cast<int>(first), static_cast<int>(end)};
}

}  // namespace

RowRange EllipseRows(Rect box, int width, std::span<RowSpan> rows) noexcept {
  const WideRect sides = Ordered(box);
  const RowRange range = ClearRows(sides, rows);
  FillEllipseOn(SpanNotes(width, rows), sides);
  return range;
}

RowRange RectangleRows(Rect box, int width, std::span<RowSpan> rows) noexcept {
  const WideRect sides = Ordered(box);
  const RowRange range = ClearRows(sides, rows);
  SpanNotes(width, rows).FillRect({sides.left, sides.top, sides.right - 1, sides.bottom - 1});
  return range;
}

void WideLineSpans(Point from, Point to, int penWidth, int width, int height, const TakeSpan& take) {
  RoundCap(SpanTaker(kStartCap, width, height, take), from, penWidth);
  if (from == to) return;
  RoundCap(SpanTaker(kEndCap, width, height, take), to, penWidth);
  WideBody(SpanTaker(kBody, width, height, take), from, to, penWidth);
}

DrawingSurface::DrawingSurface(int width, int height) noexcept
    : dib_(BlankDib(width, height, nullptr, 24)), view_(dib_) {}

void DrawingSurface::FillRect(Rect rect, Colour colour) noexcept {
  if (view_ && !EndRequested()) Canvas(view_, colour).FillRect({rect.left, rect.top, rect.right, rect.bottom});
}

void DrawingSurface::FillPolygon(std::span<const Point> points, Colour colour, FillRule rule) noexcept {
  if (view_) FillPolygonOn(Canvas(view_, colour), points, rule);
}

void DrawingSurface::FillEllipse(Rect box, Colour colour) noexcept {
  if (view_ && !EndRequested()) FillEllipseOn(Canvas(view_, colour), Ordered(box));
}

void DrawingSurface::FillRectangle(Rect box, Colour colour) noexcept {
  const WideRect sides = Ordered(box);
  if (view_) Canvas(view_, colour).FillRect({sides.left, sides.top, sides.right - 1, sides.bottom - 1});
}

void DrawingSurface::Polyline(std::span<const Point> points, int penWidth, Colour colour) noexcept {
  if (!view_ || points.size() < 2) return;
  const Canvas canvas(view_, colour);
  for (std::size_t i = 0; i < points.size() && !EndRequested(); ++i) {
    if (penWidth > 1) RoundCap(canvas, points[i], penWidth);
    if (i == 0 || points[i] == points[i - 1]) continue;
    penWidth > 1 ? WideBody(canvas, points[i - 1], points[i], penWidth) : ThinLine(canvas, points[i - 1], points[i]);
  }
}

PackedDib DrawingSurface::End() noexcept {
  { const DibView unlocked(std::move(view_)); }
  return std::move(dib_);
}

PackedDib DrawingSurface::EndAsMask() noexcept {
  const PackedDib drawing = End();
  const DibView from(drawing);
  PackedDib mask = from ? BlankMask(from.Width(), from.Height()) : PackedDib();
  const DibView to(mask);
  if (!to) return {};
  for (int y = 0; y < to.Height(); ++y) {
    if (EndRequested()) return {};
    const std::uint8_t* in = from.Row(y);
    std::uint8_t* out = to.Row(y);
    for (int x = 0; x < to.Width(); ++x) out[x] = in[3 * x];
  }
  return mask;
}

}  // namespace glyphmotion
