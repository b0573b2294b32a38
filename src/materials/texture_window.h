// SPDX-License-Identifier: MIT
// The part of a texture that is rendered. Materials show the middle of a square texture, so most of a wide one would be
// thrown away.
#pragma once

#include <algorithm>

#include "image/packed_dib.h"
#include "materials/material.h"

namespace glyphmotion {

/// The size of a texture, from its bounds, and the window of it that becomes the picture.
struct TextureWindow {
  int width = 0, height = 0;  ///< of the whole texture
  Rect shown;                 ///< within it

  /// False when there is nothing to render, or too much.
  explicit operator bool() const { return DibSize(shown.Width(), shown.Height(), 24) != 0; }
};

/// The middle of the texture, `shownWidth` x `shownHeight` pixels at most.
inline TextureWindow MiddleOf(const TextureSpec& parameters, int shownWidth, int shownHeight) {
  const std::int64_t width = std::int64_t{parameters.Right} - parameters.Left,
                     height = std::int64_t{parameters.Bottom} - parameters.Top;
  if (width < 1 || height < 1 || width > INT32_MAX || height > INT32_MAX) return {};
  TextureWindow window{static_cast<int>(width), static_cast<int>(height), {}};
  const int w = std::min(window.width, shownWidth), h = std::min(window.height, shownHeight);
  const int left = (window.width - w) / 2, top = (window.height - h) / 2;
  window.shown = {left, top, left + w, top + h};
  return window;
}

/// All of it.
inline TextureWindow WholeOf(const TextureSpec& parameters) { return MiddleOf(parameters, INT32_MAX, INT32_MAX); }

}  // namespace glyphmotion
