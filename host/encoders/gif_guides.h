// SPDX-License-Identifier: MIT
// Neighbours of an animation are mostly alike, so what compresses one of them best is nearly the best for the others.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "host/encoders/gif_frame.h"

namespace glyphmotion {

/// What frames have to have in common.
struct GifLikeness {
  std::size_t pixels = 0;    ///< in the crop
  std::size_t required = 0;  ///< those that change
  bool hasFree = false;      ///< whether any is free
};

GifLikeness LikenessOf(const GifPixels& pixels);

/// The frames of an animation in two kinds, each in order.
struct GifGuides {
  /// A frame whose neighbours tell how to compress it.
  struct Guided {
    std::size_t frame;
    std::size_t before;  ///< the searched frame before it that it is like
    std::size_t after;   ///< one after it; if there is none, `before` again
  };
  std::vector<std::size_t> searched;  ///< frames that are compressed in all ways
  std::vector<Guided> guided;
};

/// reach 1 or more: a guide is less than so many frames away. With 1 every frame is searched.
GifGuides ChooseGuides(std::span<const GifLikeness> frames, std::size_t reach);

}  // namespace glyphmotion
