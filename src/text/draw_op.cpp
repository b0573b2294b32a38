// SPDX-License-Identifier: MIT
#include "text/draw_op.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

namespace glyphmotion {
namespace {

constexpr int kShapeMargin = 4;      // pixels around a shape's bounds, on each side
constexpr int kSupersample = 4;      // antialiased shapes are drawn at four times the size
constexpr int kWidestBox = 1 << 20;  // pixels; wider boxes cannot be drawn anyway

int WholePixels(double side) { return static_cast<int>(std::clamp(side, 0.0, static_cast<double>(kWidestBox))); }

std::uint8_t ScaleByCoverage(int channel, int coverage) {
  return static_cast<std::uint8_t>(Div255(channel * coverage + 127));
}

// ---- Text ----

bool Measure(const DrawOpRecord& record, char32_t character, int& width, int& height) {
  GlyphBox box;
  if (!MeasureGlyph(record.font, character, box)) return false;
  width = WholePixels(box.width);
  height = WholePixels(box.height);
  return true;
}

/// The glyph in `colour` on black, in a bitmap of width x height.
PackedDib Paint(const GlyphBitmap& glyph, Colour colour, int width, int height) {
  PackedDib bitmap = BlankDib(width, height, nullptr, 24);
  const DibView view(bitmap);
  if (!view) return {};
  const int columns = std::min(width, glyph.width), rows = std::min(height, glyph.height);
  const std::uint8_t* coverage = glyph.coverage.data();
  for (int y = 0; y < rows; ++y, coverage += glyph.width) {
    std::uint8_t* out = view.Row(y);
    for (int x = 0; x < columns; ++x, out += 3) {
      out[0] = ScaleByCoverage(BlueOf(colour), coverage[x]);
      out[1] = ScaleByCoverage(GreenOf(colour), coverage[x]);
      out[2] = ScaleByCoverage(RedOf(colour), coverage[x]);
    }
  }
  return bitmap;
}

bool DrawDirect(const DrawOpRecord& record) {
  GlyphBitmap glyph;
  if (!record.target || !RenderGlyph(record.font, record.text, false, glyph)) return false;
  for (int y = 0; y < glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      if (!glyph.coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(glyph.width) +
                          static_cast<std::size_t>(x)]) {
        continue;
      }
      const Colour under = record.target->GetPixel(record.x + x, record.y + y);
      record.target->SetPixel(record.x + x, record.y + y, Blend(under, record.colour, record.level));
    }
  }
  return true;
}

/// The same font with an em of 88 percent of the size, as the path modes want it.
FontRequest PathFont(const FontRequest& font) {
  FontRequest smaller = font;
  GlyphBox blank;
  if (MeasureGlyph(font, U' ', blank) && blank.width > 0) {
    const double em = 3 * blank.width, wanted = font.cellHeight * 0.88;
    smaller.cellHeight = std::max(static_cast<int>(std::lround(font.cellHeight * wanted / em)), 1);
  }
  return smaller;
}

PackedDib DrawPath(const DrawOpRecord& record, int width, int height) {
  GlyphBitmap glyph;
  const double pen = record.textMode == TextMode::PathOutline ? std::max(record.penWidth, 1) : 0;
  if (!RenderGlyphOutline(PathFont(record.font), record.text, record.antialias, pen, glyph)) return {};
  return Paint(glyph, record.colour, width, height);
}

DrawOpResult Text(DrawOpRecord& record) {
  record.width = record.height = 0;
  if (record.text == 0) return {record.textMode == TextMode::Measure || record.textMode == TextMode::Direct, {}};
  int width = 0, height = 0;
  if (!Measure(record, record.text, width, height)) return {};
  record.width = width;
  record.height = height;
  switch (record.textMode) {
    case TextMode::Measure: {
      int blankWidth = 0, blankHeight = 0;
      if (record.text > 32 && !Measure(record, U' ', blankWidth, blankHeight)) return {};
      record.width -= blankWidth;
      return {true, {}};
    }
    case TextMode::Direct:
      return {DrawDirect(record), {}};
    case TextMode::Glyph: {
      GlyphBitmap glyph;
      if (!RenderGlyph(record.font, record.text, record.antialias, glyph)) return {};
      return {false, Paint(glyph, record.colour, glyph.width, glyph.height)};
    }
    case TextMode::PathOutline:
    case TextMode::PathFill:
      return {false, DrawPath(record, std::max(width, 1), std::max(height, 1))};
  }
  return {};
}

// ---- Shapes ----

/// A record's shape at `scale` times its size, its bounds' corner moved into the margin.
struct Shape {
  const DrawOpRecord& record;
  int scale = 1;
  Rect box{};

  Shape(const DrawOpRecord& r, int s) : record(r), scale(s) {
    const int corner = kShapeMargin * s;
    box = {corner, corner, corner + r.bounds.Width() * s, corner + r.bounds.Height() * s};
  }
  int Pen() const { return std::max(record.penWidth, 1) * scale; }
  std::vector<Point> Points() const {
    std::vector<Point> points;
    points.reserve(record.points.size() + 1);
    const auto place = [this](int v, int edge) {
      return (std::clamp(v, -kWidestBox, kWidestBox) - edge + kShapeMargin) * scale;
    };
    for (const Point& p : record.points) {
      points.push_back({place(p.x, record.bounds.left), place(p.y, record.bounds.top)});
    }
    return points;
  }
};

Rect Grown(Rect box, int by) { return {box.left - by, box.top - by, box.right + by, box.bottom + by}; }

void FillRounded(DrawingSurface& surface, Rect box, int radius, Colour colour) {
  const int r = std::clamp(radius, 0, std::min(box.Width(), box.Height()) / 2);
  surface.FillRect({box.left + r, box.top, box.right - r, box.bottom}, colour);
  surface.FillRect({box.left, box.top + r, box.right, box.bottom - r}, colour);
  if (r == 0) return;
  for (const int left : {box.left, box.right - 2 * r}) {
    for (const int top : {box.top, box.bottom - 2 * r}) {
      surface.FillEllipse({left, top, left + 2 * r, top + 2 * r}, colour);
    }
  }
}

/// Fill and outline of a closed shape: the outline is what the shape grown by half a pen has over the one shrunk by it.
template <typename Fill>
void FillAndOutline(const Shape& shape, Fill fill) {
  const DrawOpRecord& record = shape.record;
  if (record.outline == kNoColour) {
    if (record.fill != kNoColour) fill(0, record.fill);
    return;
  }
  const int outer = shape.Pen() / 2, inner = shape.Pen() - outer;
  fill(outer, record.outline);
  if (shape.box.Width() > 2 * inner && shape.box.Height() > 2 * inner) {
    fill(-inner, record.fill != kNoColour ? record.fill : Colour{0});
  }
}

void DrawShape(DrawingSurface& surface, const Shape& shape) {
  const DrawOpRecord& record = shape.record;
  switch (record.op) {
    case DrawOperation::Line:
      if (record.outline != kNoColour) surface.Polyline(shape.Points(), shape.Pen(), record.outline);
      break;
    case DrawOperation::Ellipse:
      FillAndOutline(shape, [&](int by, Colour colour) { surface.FillEllipse(Grown(shape.box, by), colour); });
      break;
    case DrawOperation::RoundedRectangle:
      FillAndOutline(shape, [&](int by, Colour colour) {
        const int radius = record.cornerRadius > 0 ? record.cornerRadius * shape.scale + by : 0;
        FillRounded(surface, Grown(shape.box, by), radius, colour);
      });
      break;
    case DrawOperation::Polygon: {
      std::vector<Point> points = shape.Points();
      if (points.empty()) break;
      if (record.fill != kNoColour) surface.FillPolygon(points, record.fill);
      points.push_back(points.front());
      if (record.outline != kNoColour) surface.Polyline(points, shape.Pen(), record.outline);
      break;
    }
    default:
      break;
  }
}

/// The mean of each square of kSupersample pixels.
PackedDib Reduce(const PackedDib& large, int width, int height) {
  PackedDib reduced = BlankDib(width, height, nullptr, 24);
  const DibView from(large), to(reduced);
  if (!from || !to) return {};
  constexpr int kPixels = kSupersample * kSupersample;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      int sums[3] = {};
      for (int j = 0; j < kSupersample; ++j) {
        const std::uint8_t* in = from.Row(y * kSupersample + j) + x * kSupersample * 3;
        for (int i = 0; i < kSupersample * 3; ++i) sums[i % 3] += in[i];
      }
      for (int c = 0; c < 3; ++c) to.Row(y)[x * 3 + c] = static_cast<std::uint8_t>((sums[c] + kPixels / 2) / kPixels);
    }
  }
  return reduced;
}

/// How far (x, y) of a w x h rectangle is on the way from the first colour to the second, 0 to 255.
int GradientPlace(int shape, int x, int y, int w, int h) {
  const double u = w > 1 ? 2.0 * x / (w - 1) - 1 : 0, v = h > 1 ? 2.0 * y / (h - 1) - 1 : 0;  // -1 to 1
  const double place = shape == 1   ? std::min(std::sqrt(u * u + v * v), 1.0)
                       : shape == 2 ? std::max(std::abs(u), std::abs(v))
                                    : (u + 1) / 2;
  return static_cast<int>(place * 255);
}

PackedDib GradientRectangle(const DrawOpRecord& record, int width, int height) {
  PackedDib bitmap = BlankDib(width, height, nullptr, 24);
  const DibView view(bitmap);
  if (!view) return {};
  const int w = record.bounds.Width(), h = record.bounds.Height();
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const int place = GradientPlace(record.gradientShape, x, y, w, h);
      view.SetPixel(kShapeMargin + x, kShapeMargin + y, Blend(record.colour, record.secondColour, place));
    }
  }
  return bitmap;
}

PackedDib ShapeBitmap(const DrawOpRecord& record) {
  const auto isInside = [](int v) { return v > -kWidestBox && v < kWidestBox; };
  const Rect& bounds = record.bounds;
  if (!isInside(bounds.left) || !isInside(bounds.top) || !isInside(bounds.right) || !isInside(bounds.bottom)) return {};
  const int width = bounds.Width() + 2 * kShapeMargin, height = bounds.Height() + 2 * kShapeMargin;
  if (bounds.Width() < 0 || bounds.Height() < 0) return {};
  if (record.op == DrawOperation::GradientRectangle) return GradientRectangle(record, width, height);
  const int scale = record.antialias ? kSupersample : 1;
  DrawingSurface surface(width * scale, height * scale);
  if (!surface) return {};
  DrawShape(surface, Shape(record, scale));
  PackedDib drawing = surface.End();
  return scale == 1 ? std::move(drawing) : Reduce(drawing, width, height);
}

}  // namespace

DrawOpResult DrawOp(DrawOpRecord& record) noexcept try {
  switch (record.op) {
    case DrawOperation::StartUp:
      return {StartTextEngine(), {}};
    case DrawOperation::ShutDown:
      StopTextEngine();
      return {true, {}};
    case DrawOperation::Text:
      return Text(record);
    case DrawOperation::Line:
    case DrawOperation::Ellipse:
    case DrawOperation::RoundedRectangle:
    case DrawOperation::Polygon:
    case DrawOperation::GradientRectangle:
      return {false, ShapeBitmap(record)};
  }
  return {};
} catch (const std::bad_alloc&) {
  return {false, {}, true};
}

}  // namespace glyphmotion
