// SPDX-License-Identifier: MIT
// The face of a colour curve: four points at fixed x positions, each from 0 at the bottom to 1 at the top, and the
// curve that a texture interpolates through them.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

constexpr int kCurvePoints = 4;

/// Paints the curve in its colour on a grid; the point that the keys move is filled.
void PaintColourCurve(const DrawRequest& request, const float (&values)[kCurvePoints], Colour colour,
                      int current) noexcept;

/// The point nearest to column x of a face of this width.
int CurvePointAt(int width, int x) noexcept;
/// The value at row y of a face of this height, clamped to 0 to 1.
float CurveValueAt(int height, int y) noexcept;

}  // namespace glyphmotion
