// SPDX-License-Identifier: MIT
#include "materials/gradient.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

#include "image/angles.h"
#include "image/surface.h"
#include "materials/fountain.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

using Table = std::vector<Colour>;

// Truncates any number, including those that malformed records lead to.
int Truncate(double value) {
  if (!(value > -1e9)) return value < 0 ? -1000000000 : 0;
  return value < 1e9 ? static_cast<int>(value) : 1000000000;
}

// a * s + b * t for each channel in single precision, truncated.
Colour Mix(Colour a, float s, Colour b, float t) {
  const auto channel = [&](int p, int q) {
    return static_cast<int>(static_cast<float>(p) * s + static_cast<float>(q) * t);
  };
  return MakeColour(channel(RedOf(a), RedOf(b)), channel(GreenOf(a), GreenOf(b)), channel(BlueOf(a), BlueOf(b)));
}

Colour EntryOf(const Table& table, int i) {
  return i >= 0 && i < static_cast<int>(table.size()) ? table[static_cast<std::size_t>(i)] : 0;
}

// Tables ------------------------------------------------------------------------------------------------------------

// Renders a fountain into `count` entries from `first` on.
bool FillFromFountain(Table& table, const FountainSpec& fountain, int first, int count) {
  const PackedDib strip = FountainToBitmap(fountain, count, 1);
  const DibView view(strip);
  if (!view) return false;
  for (int i = 0; i < count; ++i) table[static_cast<std::size_t>(first + i)] = view.GetPixel(i, 0) & 0xFFFFFF;
  return true;
}

// Two colours with a midpoint off centre are a fountain of three stops. The middle stop's position ignores the pad;
// with a large pad it comes before the first stop, which the fountain then skips.
FountainSpec MidpointFountain(const GradientSpec& gradient) {
  FountainSpec fountain;
  DefaultFountain(fountain, 0);
  const Colour start = gradient.StartColour & 0xFFFFFF, end = gradient.EndColour & 0xFFFFFF;
  const int pad = gradient.EdgePad > 0 ? Truncate(gradient.EdgePad / 100.0 * 255.0) : 0;
  fountain.StartColour = start;
  fountain.EndColour = end;
  fountain.MarkerCount = 2;
  fountain.Markers[0] = MakeMarker(pad, start);
  fountain.Markers[1] =
      MakeMarker(Truncate((255.0 - 2.0 * pad) * (gradient.Midpoint / 100.0)), Mix(start, 0.5f, end, 0.5f));
  return fountain;
}

}  // namespace

std::optional<std::vector<Colour>> GradientTable(const GradientSpec& gradient, const FountainSpec& fountain, int n) {
  if (n < 0) return std::nullopt;
  Table table(static_cast<std::size_t>(n));
  if (n == 0) return table;
  const Colour start = gradient.StartColour & 0xFFFFFF, end = gradient.EndColour & 0xFFFFFF;
  // Only malformed records have a pad of 50 or more, which leaves nothing between the ends.
  const int pad = gradient.EdgePad > 0 ? std::min(Truncate(gradient.EdgePad / 100.0 * n), n) : 0;
  const int inner = std::max(n - 2 * pad, 0);
  std::fill_n(table.begin(), pad, start);
  std::fill_n(table.end() - pad, pad, end);
  if (!gradient.TwoColor) {
    if (inner > 0 && !FillFromFountain(table, fountain, pad, inner)) return std::nullopt;
    return table;
  }
  if (gradient.Midpoint == 50) {
    for (int i = 0; i < inner; ++i) {
      const float t = static_cast<float>(i) / static_cast<float>(inner);
      table[static_cast<std::size_t>(pad + i)] = Mix(end, t, start, 1.0f - t);
    }
  } else if (!FillFromFountain(table, MidpointFountain(gradient), 0, n)) {
    return std::nullopt;
  }
  table.front() = start;
  table.back() = end;
  return table;
}

namespace {

// The linear shape ----------------------------------------------------------------------------------------------------

// Rotates points about a centre, in single precision.
struct Turn {
  float c, s;
  int cx, cy;
  explicit Turn(int rotation, int width, int height) : cx(width / 2), cy(height / 2) {
    // A degree cut to seven digits: the nearest float would move corners by a pixel.
    const float angle = static_cast<float>(rotation) * 0.01745328f;
    c = static_cast<float>(std::cos(static_cast<double>(angle)));
    s = static_cast<float>(std::sin(static_cast<double>(angle)));
  }
  Point operator()(float x, float y) const { return {Truncate(x * c - y * s) + cx, Truncate(x * s + y * c) + cy}; }
};

// Draws bands from the upper edge of the rotated box on; `colourOf` returns the colour of band i, which starts at
// fraction t. The table has one entry per band; edges overlap so that there are no gaps.
template <typename ColourOfBand>
PackedDib RenderBands(int width, int height, int rotation, ColourOfBand colourOf) {
  DrawingSurface surface(width, height);
  if (!surface) return {};
  const Turn turn(rotation, width, height);
  const auto left = static_cast<float>(-2 - turn.cx), right = static_cast<float>(width + 2 - turn.cx);
  const auto top = static_cast<float>(-2 - turn.cy), bottom = static_cast<float>(height + 2 - turn.cy);
  const Point corners[] = {turn(left, top), turn(right, top), turn(right, bottom), turn(left, bottom)};
  const auto [minX, maxX] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [minY, maxY] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  const auto length = static_cast<float>(maxY - minY);
  const float band = length * 0.00390625f;
  const auto x0 = static_cast<float>(minX - turn.cx), x1 = static_cast<float>(maxX - turn.cx);
  int i = 0;
  for (float p = 0; p < length; p += band, ++i) {
    if (EndRequested()) return {};
    const auto y0 = static_cast<float>(Truncate(p) + minY - turn.cy);
    const auto y1 = static_cast<float>(Truncate(std::ceil(p + band)) + minY - turn.cy);
    const Point quad[] = {turn(x0, y0), turn(x1, y0), turn(x1, y1), turn(x0, y1), turn(x0, y0)};
    surface.FillPolygon(quad, colourOf(i, p / length));
  }
  return surface.End();
}

PackedDib RenderLinear(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain) {
  const auto table = GradientTable(gradient, fountain, 256);
  if (!table) return {};
  return RenderBands(width, height, gradient.Rotation, [&](int i, float) { return EntryOf(*table, i); });
}

// The conical shape ---------------------------------------------------------------------------------------------------

struct Cone {
  int row, column;  // the centre
  int phase;        // degrees, 0 to 720
};

// The step, 0 to 256, of the sweep at dy rows below and d columns to the right of the centre. The sweep is mirrored: it
// runs forth and back around the centre.
int ConeStep(const Cone& cone, int dy, int d) {
  float a;
  if (d == 0) {
    a = dy < 1 ? 90.0f : 270.0f;
  } else {
    const float ratio = static_cast<float>(dy) / static_cast<float>(d);
    a = static_cast<float>(std::atan(static_cast<double>(ratio)) * kDegreesPerRadian);
    if (d > 0) a += 180.0f;
    while (a < 0.0f) a += 360.0f;
  }
  a += static_cast<float>(cone.phase);
  while (a > 360.0f) a -= 360.0f;
  if (a > 180.0f) a = 360.0f - a;
  return std::clamp(static_cast<int>(a / 180.0 * 256.0), 0, 256);
}

// An estimate of ConeStep before truncation, in steps, with an error below kStepDoubt. The polynomial is that of
// Hastings, "Approximations for Digital Computers": within 1e-5 radians.
constexpr float kStepDoubt = 2e-3f;

GLYPHMOTION_CLONES void EstimateSteps(const Cone& cone, int dy, int width, float* steps) {
  const auto y = static_cast<float>(dy);
  const float ySize = std::fabs(y);
  const auto phase = static_cast<float>(cone.phase);
  for (int x = 0; x < width; ++x) {
    const auto d = static_cast<float>(x - cone.column);
    const float dSize = std::fabs(d);
    const float larger = std::max(std::max(dSize, ySize), 1.0f), z = std::min(dSize, ySize) / larger;
    const float z2 = z * z;
    float a = z * (0.9998660f + z2 * (-0.3302995f + z2 * (0.1801410f + z2 * (-0.0851330f + z2 * 0.0208351f))));
    a *= static_cast<float>(kDegreesPerRadian);
    a = ySize > dSize ? 90.0f - a : a;
    a = y * d < 0.0f ? -a : a;
    a = d > 0.0f ? a + 180.0f : a;
    a = a < 0.0f ? a + 360.0f : a;
    a += phase;
    a = a > 360.0f ? a - 360.0f : a;
    a = a > 360.0f ? a - 360.0f : a;
    a = a > 180.0f ? 360.0f - a : a;
    steps[x] = a * (256.0f / 180.0f);
  }
}

PackedDib RenderConical(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain) {
  PackedDib picture = BlankDib(width, height, nullptr, 24);
  const DibView view(picture);
  const auto table = GradientTable(gradient, fountain, 360);
  if (!view || !table) return {};
  std::array<Colour, 257> colours;
  for (int k = 0; k <= 256; ++k) {
    colours[static_cast<std::size_t>(k)] = EntryOf(*table, static_cast<int>(k * 0.00390625f * 359.0));
  }
  // Only malformed records exceed a full turn.
  const bool isWithin = gradient.Rotation >= -360 && gradient.Rotation <= 360;
  const int rotation = isWithin ? gradient.Rotation : gradient.Rotation % 360;
  const Cone cone = {Truncate((0.5 - gradient.CenterY / 100.0) * height),
                     Truncate((gradient.CenterX / 100.0 + 0.5) * width), 360 - rotation};
  std::vector<float> steps(static_cast<std::size_t>(width));
  for (int y = 0; y < height; ++y) {
    if (EndRequested()) return {};
    EstimateSteps(cone, y - cone.row, width, steps.data());
    std::uint8_t* to = view.Row(y);
    for (int x = 0; x < width; ++x, to += 3) {
      const float estimate = steps[static_cast<std::size_t>(x)];
      int k = static_cast<int>(estimate);
      const float part = estimate - static_cast<float>(k);
      if (part < kStepDoubt || part > 1.0f - kStepDoubt || x == cone.column)
        k = ConeStep(cone, y - cone.row, x - cone.column);
      const Colour colour = colours[static_cast<std::size_t>(k)];
      to[0] = static_cast<std::uint8_t>(BlueOf(colour));
      to[1] = static_cast<std::uint8_t>(GreenOf(colour));
      to[2] = static_cast<std::uint8_t>(RedOf(colour));
    }
  }
  return picture;
}

// The ring shapes -----------------------------------------------------------------------------------------------------

// The boxes of all rings, starting with the outermost, which encloses the bitmap. They shrink towards a point that
// moves away from the centre.
std::vector<Rect> RingBoxes(int width, int height, int n, const GradientSpec& gradient) {
  std::vector<Rect> boxes(static_cast<std::size_t>(n));
  const auto count = static_cast<float>(n);
  const auto w2 = static_cast<float>(width * std::sqrt(2.0)), h2 = static_cast<float>(height * std::sqrt(2.0));
  const auto middleX = static_cast<float>(width / 2), middleY = static_cast<float>(height / 2);
  float left = middleX - w2 * 0.5f, right = middleX + w2 * 0.5f;
  float top = middleY - h2 * 0.5f, bottom = middleY + h2 * 0.5f;
  const float sx = w2 * 0.5f / count, sy = h2 * 0.5f / count;
  const float dx = w2 / count * static_cast<float>(gradient.CenterX) / 100.0f;
  const float dy = h2 / count * static_cast<float>(gradient.CenterY) / 100.0f;
  for (Rect& box : boxes) {
    box = {Truncate(left), Truncate(top), Truncate(right), Truncate(bottom)};
    left += sx;
    left += dx;
    top += sy + dy;
    right = right - sx + dx;
    bottom = bottom - sy + dy;
  }
  return boxes;
}

// One row of the bitmap while rings are drawn from the innermost outwards: the columns already covered.
struct Covered {
  int left = 0, right = 0;
  bool Empty() const { return left >= right; }
};

void PaintSpan(std::uint8_t* row, int left, int right, const std::uint8_t (&pixel)[3]) {
  for (std::uint8_t* to = row + 3 * left; to < row + 3 * right; to += 3) {
    to[0] = pixel[0];
    to[1] = pixel[1];
    to[2] = pixel[2];
  }
}

// Draws rings from the last, which is on top, to the first, so that each pixel is written once. False when a row's
// covered columns are not contiguous, which only out-of-range centres cause.
bool PaintRingsInwardsOut(const DibView& view, const std::vector<Rect>& boxes, bool round, Colour background,
                          const std::function<Colour(int)>& colourOf) {
  std::vector<Covered> covered(static_cast<std::size_t>(view.Height()));
  std::vector<RowSpan> rows(covered.size());
  const auto lay = [&](int y, RowSpan span, Colour colour) {
    Covered& row = covered[static_cast<std::size_t>(y)];
    const std::uint8_t pixel[] = {static_cast<std::uint8_t>(BlueOf(colour)), static_cast<std::uint8_t>(GreenOf(colour)),
                                  static_cast<std::uint8_t>(RedOf(colour))};
    if (span.left >= span.right) return true;
    if (row.Empty()) {
      PaintSpan(view.Row(y), span.left, span.right, pixel);
      row = {span.left, span.right};
      return true;
    }
    if (span.left > row.right || span.right < row.left) return false;
    PaintSpan(view.Row(y), span.left, std::min(span.right, row.left), pixel);
    PaintSpan(view.Row(y), std::max(span.left, row.right), span.right, pixel);
    row = {std::min(row.left, span.left), std::max(row.right, span.right)};
    return true;
  };
  for (int i = static_cast<int>(boxes.size()) - 1; i >= 0; --i) {
    if (EndRequested()) return true;  // the unfinished picture is discarded
    const Rect& box = boxes[static_cast<std::size_t>(i)];
    const auto [first, end] = round ? EllipseRows(box, view.Width(), rows) : RectangleRows(box, view.Width(), rows);
    for (int y = first; y < end; ++y) {
      if (!lay(y, rows[static_cast<std::size_t>(y)], colourOf(i))) return false;
    }
  }
  for (int y = 0; y < view.Height(); ++y) {
    if (!lay(y, {0, view.Width()}, background)) return false;
  }
  return true;
}

PackedDib RenderRings(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain, bool round) {
  const double halfWidth = width / 2, halfHeight = height / 2;
  const int n = static_cast<int>(std::sqrt(halfWidth * halfWidth + halfHeight * halfHeight) + 0.5);
  const auto table = GradientTable(gradient, fountain, n);
  if (!table) return {};
  if (n == 0)
    return SolidDib(width, height, (gradient.TwoColor ? gradient.StartColour : fountain.StartColour) & 0xFFFFFF);
  const std::vector<Rect> boxes = RingBoxes(width, height, n, gradient);
  const auto colourOf = [&](int i) { return EntryOf(*table, i); };
  DrawingSurface surface(width, height);
  if (!surface) return {};
  PackedDib picture = surface.End();
  if (PaintRingsInwardsOut(DibView(picture), boxes, round, EntryOf(*table, 0), colourOf)) return picture;
  DrawingSurface plain(width, height);
  if (!plain) return {};
  plain.FillRect({0, 0, width, height}, EntryOf(*table, 0));
  for (int i = 0; i < n; ++i) {
    if (EndRequested()) return {};
    const Rect& box = boxes[static_cast<std::size_t>(i)];
    round ? plain.FillEllipse(box, colourOf(i)) : plain.FillRectangle(box, colourOf(i));
  }
  return plain.End();
}

}  // namespace

PackedDib RenderLinearBlend(Colour first, Colour last, int width, int height, int rotation) noexcept {
  return RenderBands(width, height, rotation, [&](int, float t) { return Mix(first, t, last, 1.0f - t); });
}

PackedDib RenderGradient(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain) noexcept {
  // Tables grow with the sides, so impossible sides are refused first.
  if (!DibSize(width, height, 24)) return {};
  try {
    switch (gradient.GradientType) {
      case 1:
        return RenderConical(width, height, gradient, fountain);
      case 2:
        return RenderRings(width, height, gradient, fountain, true);
      case 3:
        return RenderRings(width, height, gradient, fountain, false);
      default:
        return RenderLinear(width, height, gradient, fountain);
    }
  } catch (...) {
    return {};
  }
}

}  // namespace glyphmotion
