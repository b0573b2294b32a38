// SPDX-License-Identifier: MIT
// One colour laid over rows of 24-bit pixels: what the effects that paint on a fill bitmap do most.
#pragma once

#include <cstdint>

#include "image/colour.h"

namespace glyphmotion {

/// Blends `colour` into `count` pixels from `under` on, all with weight a (0 to 255).
void BlendColour(std::uint8_t* under, int count, Colour colour, int a) noexcept;

/// Blends `colour` into `count` pixels from `under` on, each with its own weight.
void BlendColourMasked(std::uint8_t* under, const std::uint8_t* weights, int count, Colour colour) noexcept;

}  // namespace glyphmotion
