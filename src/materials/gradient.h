// SPDX-License-Identifier: MIT
// Gradients in four shapes. Each shape lays out a table of colours, in which midpoint, edge pad and the choice between
// two colours and a fountain are already resolved. A fountain itself is drawn with the linear shape without a table.
// Single precision is used where the pixels depend on it: only then do the edges of bands fall on the same pixels.
#pragma once

#include <optional>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

/// n colours of a gradient, 0x00BBGGRR; empty when n is negative or on failure. EdgePad percent at each end are flat,
/// in StartColour and EndColour even if a fountain fills the rest.
std::optional<std::vector<Colour>> GradientTable(const GradientSpec& gradient, const FountainSpec& fountain, int n);

/// A new 24-bit bitmap; nothing on failure. Types above 3 are linear.
PackedDib RenderGradient(int width, int height, const GradientSpec& gradient, const FountainSpec& fountain) noexcept;

/// The linear shape without a table: up to 256 bands across a box turned by `rotation` degrees about the bitmap's
/// middle. At 90 degrees `first` lies at the left and `last` at the right.
PackedDib RenderLinearBlend(Colour first, Colour last, int width, int height, int rotation) noexcept;

}  // namespace glyphmotion
