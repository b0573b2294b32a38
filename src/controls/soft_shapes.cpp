// SPDX-License-Identifier: MIT
// Signed distances: negative inside a shape, positive outside, in pixels.
#include "controls/soft_shapes.h"

#include <algorithm>
#include <cmath>

#include "controls/face_pixels.h"

namespace glyphmotion {
namespace {

/// Blends every pixel of the bounds by its coverage, which is half if the edge passes through its centre.
template <typename Distance>
void Paint(const DrawRequest& request, const SoftRect& bounds, const Shade& shade, Distance distance) {
  const int top = std::max(static_cast<int>(std::floor(bounds.top)), 0);
  const int bottom = std::min(static_cast<int>(std::ceil(bounds.bottom)), request.height);
  const int left = std::max(static_cast<int>(std::floor(bounds.left)), 0);
  const int right = std::min(static_cast<int>(std::ceil(bounds.right)), request.width);
  const double height = std::max(bounds.bottom - bounds.top, 1.0);
  for (int y = top; y < bottom; ++y) {
    const double down = std::clamp((y + 0.5 - bounds.top) / height, 0.0, 1.0);
    const Colour colour = Blend(shade.top, shade.bottom, static_cast<int>(std::lround(down * 255)));
    std::uint8_t* pixel = FacePixel(request, left, y);
    for (int x = left; x < right; ++x, pixel += 3) {
      const double alpha = std::clamp(0.5 - distance(x + 0.5, y + 0.5), 0.0, 1.0) * shade.alpha;
      if (alpha > 0) BlendColour(pixel, colour, static_cast<int>(std::lround(alpha * 255)));
    }
  }
}

auto RoundedDistance(const SoftRect& rect, double radius) {
  const double halfWidth = (rect.right - rect.left) / 2, halfHeight = (rect.bottom - rect.top) / 2;
  const double r = std::clamp(radius, 0.0, std::max(std::min(halfWidth, halfHeight), 0.0));
  return [=, x0 = rect.left + halfWidth, y0 = rect.top + halfHeight](double x, double y) {
    const double dx = std::abs(x - x0) - halfWidth + r, dy = std::abs(y - y0) - halfHeight + r;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - r;
  };
}

}  // namespace

void FillRounded(const DrawRequest& request, SoftRect rect, double radius, const Shade& shade) {
  Paint(request, rect, shade, RoundedDistance(rect, radius));
}

void StrokeRounded(const DrawRequest& request, SoftRect rect, double radius, double width, const Shade& shade) {
  const auto outer = RoundedDistance(rect, radius);
  Paint(request, rect, shade, [&](double x, double y) {
    const double d = outer(x, y);
    return std::max(d, -width - d);
  });
}

void FillStroke(const DrawRequest& request, double x1, double y1, double x2, double y2, double width,
                const Shade& shade) {
  const double dx = x2 - x1, dy = y2 - y1, square = dx * dx + dy * dy, half = width / 2;
  const SoftRect bounds{std::min(x1, x2) - half - 1, std::min(y1, y2) - half - 1, std::max(x1, x2) + half + 1,
                        std::max(y1, y2) + half + 1};
  Paint(request, bounds, shade, [&](double x, double y) {
    const double along = square > 0 ? std::clamp(((x - x1) * dx + (y - y1) * dy) / square, 0.0, 1.0) : 0;
    return std::hypot(x - x1 - along * dx, y - y1 - along * dy) - half;
  });
}

void FillTriangle(const DrawRequest& request, SoftRect rect, double radius, const Shade& shade) {
  // The triangle of the corners' centres, expanded by `radius`. Its sides move by `slope` columns per row.
  const double x0 = (rect.left + rect.right) / 2, bottom = rect.bottom - radius;
  const double slope = (rect.right - rect.left) / 2 / std::max(rect.bottom - rect.top, 1.0);
  const double reach = radius * std::hypot(1, slope) / slope;  // from the tip to its corner's centre
  const double tip = rect.top + std::min(reach, (bottom - rect.top) / 2);
  Paint(request, rect, shade, [&](double x, double y) {
    const double across = std::abs(x - x0), down = y - tip, height = bottom - tip;
    const double along = std::clamp((across * slope + down) / (slope * slope + 1), 0.0, height);
    const double side = std::hypot(across - along * slope, down - along);
    const double base = std::hypot(std::max(across - height * slope, 0.0), y - bottom);
    const bool inside = down > 0 && y < bottom && across < down * slope;
    return (inside ? -std::min(side, base) : std::min(side, base)) - radius;
  });
}

}  // namespace glyphmotion
