// SPDX-License-Identifier: MIT
// The bytes of a GIF file around the compressed pixels: header, palettes, frames, the loop and the comment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/encoders/gif_palette.h"

namespace glyphmotion {

/// A rectangle in pixels of the screen, excluding right and bottom.
struct GifBox {
  int left = 0, top = 0, right = 0, bottom = 0;
  bool Empty() const { return left >= right || top >= bottom; }
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
};

/// How a frame's box is treated before the next frame.
enum class GifDisposal { Keep = 1, ToBackground = 2 };

struct GifFileFrame {
  GifBox crop;
  GifDisposal disposal = GifDisposal::Keep;
  int delay = 0;                    ///< 1/100 s
  int wildcard = -1;                ///< slot of the transparent index; -1: none
  int codeSize = 2;                 ///< 2 to 8
  std::optional<GifPalette> own;    ///< the frame's own palette
  std::vector<std::uint8_t> bytes;  ///< packed codes
};

/// A whole file, which plays `loops` times if it has several frames (0: for ever). Width and height are 1 to 65535; an
/// empty comment is omitted.
std::vector<std::uint8_t> GifFileOf(int width, int height, const GifPalette& common,
                                    const std::vector<GifFileFrame>& frames, const std::string& comment, int loops = 0);

}  // namespace glyphmotion
