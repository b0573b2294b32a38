// SPDX-License-Identifier: MIT
#include "controls/colour_curve.h"

#include <algorithm>
#include <cmath>

#include "controls/face_painting.h"
#include "materials/surface_texture.h"

namespace glyphmotion {
namespace {

constexpr int kEdge = 2, kMargin = 7;  // the edge, and with it the room for half a point
constexpr int kPointHalf = 3;
constexpr double kLineHalf = 0.9;  // half the line's thickness

int ColumnOf(const Rect& plot, int point) { return plot.left + (plot.Width() - 1) * point / (kCurvePoints - 1); }
// NaN counts as 0.
double RowOf(const Rect& plot, double value) {
  return plot.top + (plot.Height() - 1) * (1.0 - (value > 0.0 ? std::min(value, 1.0) : 0.0));
}

void BlendOver(const DrawRequest& request, int x, int y, Colour colour, double part) {
  if (part <= 0.0 || !IsOnFace(request, x, y)) return;
  BlendColour(FacePixel(request, x, y), colour, static_cast<int>(std::min(part, 1.0) * 255.0));
}

// Draws column by column; the steeper the line, the more of a column it covers. Pixels are blended by coverage.
void PaintLine(const DrawRequest& request, const Rect& plot, const float (&values)[kCurvePoints], Colour colour) {
  const double step = 1.0 / std::max(plot.Width() - 1, 1), thickness = kLineHalf * request.scale;
  const auto row = [&](double t) { return RowOf(plot, TextureCurve(values, t)) + 0.5; };
  for (int x = plot.left; x < plot.right; ++x) {
    const double t = (x - plot.left) * step, before = row(t - step / 2), after = row(t + step / 2);
    const double half = thickness * std::sqrt(1.0 + (after - before) * (after - before));
    const double low = (before + after) / 2 - half, high = (before + after) / 2 + half;
    for (int y = static_cast<int>(low); y < high; ++y) {
      BlendOver(request, x, y, colour, std::min(high, y + 1.0) - std::max(low, static_cast<double>(y)));
    }
  }
}

}  // namespace

void PaintColourCurve(const DrawRequest& request, const float (&values)[kCurvePoints], Colour colour,
                      int current) noexcept {
  const auto scaled = [&](int size) { return static_cast<int>(std::lround(size * request.scale)); };
  const Rect whole = WholeOf(request), plot = Shrunk(whole, scaled(kMargin));
  const int half = scaled(kPointHalf);
  const Colour field = GetSystemColour(SystemColour::Window), grid = GetSystemColour(SystemColour::Light3D);
  PaintButtonFace(request, whole, true, field);
  FillFace(request, Shrunk(whole, kEdge), field);
  for (int i = 0; i < kCurvePoints; ++i) {
    const int x = ColumnOf(plot, i), y = plot.top + (plot.Height() - 1) * i / (kCurvePoints - 1);
    FillFace(request, {x, plot.top, x + 1, plot.bottom}, grid);
    FillFace(request, {plot.left, y, plot.right, y + 1}, grid);
  }
  PaintLine(request, plot, values, colour);
  for (int i = 0; i < kCurvePoints; ++i) {
    const int x = ColumnOf(plot, i), y = static_cast<int>(RowOf(plot, static_cast<double>(values[i])) + 0.5);
    const Rect point{x - half, y - half, x + half + 1, y + half + 1};
    FillFace(request, point, i == current ? colour : field);
    FrameFace(request, point, colour, colour);
  }
}

int CurvePointAt(int width, int x) noexcept {
  const int span = std::max(width - 2 * kMargin - 1, 1);
  return std::clamp(((x - kMargin) * (kCurvePoints - 1) * 2 + span) / (2 * span), 0, kCurvePoints - 1);
}

float CurveValueAt(int height, int y) noexcept {
  const int span = std::max(height - 2 * kMargin - 1, 1);
  return 1.0f - static_cast<float>(std::clamp(y - kMargin, 0, span)) / static_cast<float>(span);
}

}  // namespace glyphmotion
