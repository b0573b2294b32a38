// SPDX-License-Identifier: MIT
// The face of a colour curve: four points at fixed places across, each from 0 at the bottom to 1 at the top, and the
// line that a texture makes of them.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

constexpr int kCurvePoints = 4;

/// The curve in its colour on a grid; the point that the keys move is filled.
void PaintColourCurve(const DrawRequest& request, const float (&values)[kCurvePoints], Colour colour,
                      int current) noexcept;

/// The point nearest to a place across a face of this width.
int CurvePointAt(int width, int x) noexcept;
/// The value of a place down a face of this height, limited to 0 to 1.
float CurveValueAt(int height, int y) noexcept;

}  // namespace glyphmotion
