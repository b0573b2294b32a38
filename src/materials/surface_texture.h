// SPDX-License-Identifier: MIT
// Textures that are shaded surfaces: craters stamped into a height field, and gradient noise with bubbles.
#pragma once

#include "materials/texture_window.h"

namespace glyphmotion {

/// A flat surface hit by CreaterCount * 10 impacts of power-law size, lit along the rows: BackColour and ForeColour[0]
/// mixed by the slope. Seeded by SeedValue[0]. A new 24-bit bitmap of the window, or nothing.
PackedDib GenerateCraterTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept;

/// Octaves of gradient noise (MatrixSize 32 to 1024 gives 0 to 8 of them) and stamped bubbles make a grey, which three
/// curves turn into colour. The bubbles follow SeedValue[0]; the noise follows that of the first such texture of the
/// run. A new 24-bit bitmap of the bounds' size, or nothing.
PackedDib GeneratePerturbationTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept;

/// Whether a perturbation texture has built the noise tables, which last for the rest of the run.
bool NoiseTablesBuilt();

/// The value at t, 0 to 1, of a colour curve through four values, each clamped to 0 to 1. Between the values it may
/// overshoot.
double TextureCurve(const float (&values)[4], double t) noexcept;

/// The bounds of a square of `side` pixels.
inline void SetTextureBounds(TextureSpec& parameters, int side) noexcept {
  parameters.Left = parameters.Top = 0;
  parameters.Right = parameters.Bottom = side;
}

}  // namespace glyphmotion
