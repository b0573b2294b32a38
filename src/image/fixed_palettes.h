// SPDX-License-Identifier: MIT
// The nine fixed palettes, and a tenth that no list offers.
#pragma once

#include "image/colour.h"

namespace glyphmotion {

constexpr int kFixedPaletteCount = 9;
constexpr int kDefaultFixedPalette = 6;

/// Fills `palette` (256 entries, unused ones zero) and `depth` (bits a pixel), either of which may be null, with fixed
/// palette `number`; numbers that do not exist give number 6. Returns the number of entries.
int LoadFixedPalette(Palette* palette, int* depth, int number) noexcept;

}  // namespace glyphmotion
