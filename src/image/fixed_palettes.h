// SPDX-License-Identifier: MIT
// The nine fixed palettes, and a tenth that is not in any list.
#pragma once

#include "image/colour.h"

namespace glyphmotion {

constexpr int kFixedPaletteCount = 9;
constexpr int kDefaultFixedPalette = 6;

/// Fills `palette` (256 entries, unused ones zero) and `depth` (bits per pixel), either of which may be null, with
/// fixed palette `number`; invalid numbers give number 6. Returns the number of entries.
int LoadFixedPalette(Palette* palette, int* depth, int number) noexcept;

}  // namespace glyphmotion
