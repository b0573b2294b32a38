// SPDX-License-Identifier: MIT
// Gradients in four shapes. Each shape asks for a table of colours, in which midpoint, edge pad and the choice between
// two colours and a fountain are resolved, and lays the table out. The fountain, in turn, is drawn with the linear
// shape without a table.
//
// Single-precision numbers stand where the pixels depend on them: the edges of bands fall on the same pixels only with
// the same widths.
#pragma once

#include <optional>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

/// n colours of a gradient, 0x00BBGGRR; nothing when n is negative or anything could not be made. EdgePad percent at
/// each end are flat; they take StartColour and EndColour even where the fountain, not these two, fills the rest.
std::optional<std::vector<Colour>> GradientTable(const GradientSpec& gradient, const FountainSpec& fountain, int n);

/// A new 24-bit bitmap; nothing on failure. Types above 3 are linear.
PackedDib RenderGradient(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain) noexcept;

/// The linear shape without a table: up to 256 bands across a box turned by `rotation` degrees about the bitmap's
/// middle. At 90 degrees `first` lies at the left and `last` at the right.
PackedDib RenderLinearBlend(Colour first, Colour last, int width, int height, int rotation) noexcept;

}  // namespace glyphmotion
