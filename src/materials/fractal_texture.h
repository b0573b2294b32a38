// SPDX-License-Identifier: MIT
// Cloud textures by spectral synthesis of fractional Brownian motion: random complex coefficients with a power-law
// spectrum, through an inverse Fourier transform, are the opacity of one colour over the picture so far. One layer for
// each foreground colour, over a flat background. The seeds determine the whole picture.
//
// Method: Saupe, "Algorithms for random fractals", in The Science of Fractal Images. Transform: the radix-2
// decimation in time of Cooley and Tukey, one dimension after the other, twiddle factors by the double-precision
// recurrence, data in single precision.
#pragma once

#include "materials/texture_window.h"

namespace glyphmotion {

/// Matrices above this side are refused: 4096.
constexpr int kMaxMatrix = 4096;

/// TextureType 0 to 3 has 1 to 4 layers; other types have none. A new 24-bit bitmap of the bounds' size, or nothing on
/// failure. Leaves the random generator after the last layer's draws.
PackedDib GenerateFractalTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept;

/// Seeds the generator that all textures draw from.
void SeedFractalNoise(std::uint32_t seed) noexcept;

}  // namespace glyphmotion
