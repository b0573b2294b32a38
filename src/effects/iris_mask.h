// SPDX-License-Identifier: MIT
// A pattern of holes that closes over a grid, and the mix of two pictures through it.
#pragma once

#include "image/packed_dib.h"

namespace glyphmotion {

enum IrisStyle : int {
  kIrisSquare = 0,
  kIrisDiamond = 1,
  kIrisCircle = 2,
  kIrisHorizontalBlind = 3,
  kIrisVerticalBlind = 4,
  kIrisDiagonalLeft = 5,
  kIrisDiagonalRight = 6,
  kIrisChevronLeft = 7,  ///< points right, like the other
  kIrisChevronRight = 8,
  kIrisNone = 9  ///< no shapes: black but for phase 0
};

/// A mask of width x height, white at phase 0; towards phase 1 its white shapes, which lie on a grid of `size` pixels
/// from the top left, shrink to nothing. Drawn at four times the size and reduced. Empty when out of memory.
PackedDib IrisMask(int width, int height, int style, int size, double phase) noexcept;

/// `first` where the mask is 255, `second` where it is 0; each product is divided by 255 by itself. All three of one
/// size, the pictures of 24 bits; a new bitmap, or nothing when one of them is.
PackedDib MixThroughMask(const PackedDib& first, const PackedDib& second, const PackedDib& mask) noexcept;

}  // namespace glyphmotion
