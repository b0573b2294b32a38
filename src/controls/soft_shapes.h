// SPDX-License-Identifier: MIT
// Antialiased shapes on faces: a pixel's coverage is the distance of its centre inside the shape's edge, so edges are
// smooth at any size. Coordinates are in the request's pixels and may be fractional.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

struct SoftRect {
  double left = 0, top = 0, right = 0, bottom = 0;
};
constexpr SoftRect Shrunk(SoftRect rect, double by) {
  return {rect.left + by, rect.top + by, rect.right - by, rect.bottom - by};
}

/// A colour or vertical gradient. `alpha` is 0 to 1.
struct Shade {
  Colour top = 0, bottom = 0;
  double alpha = 1;
};
constexpr Shade Plain(Colour colour, double alpha = 1) { return {colour, colour, alpha}; }

/// A rectangle with rounded corners; with a radius of half its side, a circle.
void FillRounded(const DrawRequest& request, SoftRect rect, double radius, const Shade& shade);

/// Its outline, `width` wide, just inside it.
void StrokeRounded(const DrawRequest& request, SoftRect rect, double radius, double width, const Shade& shade);

/// A stroke with round caps; with equal end points, a dot.
void FillStroke(const DrawRequest& request, double x1, double y1, double x2, double y2, double width,
                const Shade& shade);

/// A triangle pointing up, with rounded corners.
void FillTriangle(const DrawRequest& request, SoftRect rect, double radius, const Shade& shade);

}  // namespace glyphmotion
