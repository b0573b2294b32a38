// SPDX-License-Identifier: MIT
// Lossy frames of a GIF: pixels may be written as near colours, or stay as they are on the screen, where that makes the
// file smaller. Every pixel is judged by what the viewer then sees against what the frame wants, so that errors do not
// add up from frame to frame.
#pragma once

#include <cstdint>
#include <vector>

#include "host/encoders/gif_file.h"
#include "host/encoders/gif_frame.h"
#include "host/encoders/gif_palette.h"
#include "host/encoders/lzw_lossy.h"

namespace glyphmotion {

/// Frames in the order of the file: each depends on what the one before left on the screen.
class GifLossyCompressor {
 public:
  /// The screen's size in pixels; loss 1 to 200: a pixel may be off by 5 * loss in squared levels of a channel.
  GifLossyCompressor(int width, int height, int loss);

  /// Compresses a frame whose symbols are slots of the palette. May change `pixels`, and reduces `crop` to what the
  /// frame still changes, unless the crop is cleared after it.
  GifStream Compress(GifPixels& pixels, const GifPalette& palette, GifBox& crop, GifDisposal disposal);

 private:
  void MeasurePalette(const GifPalette& palette);
  void FreeNearPixels(GifPixels& pixels, const GifPalette& palette, const GifBox& crop);
  static void Shrink(GifPixels& pixels, std::vector<std::uint16_t>& errors, GifBox& crop);
  void Show(const GifPalette& palette, const GifBox& crop, int wildcard);

  int width_;
  LossyLimits limits_;
  std::vector<std::uint32_t> screen_;  // red, green << 8, blue << 16, or kClear
  std::vector<std::uint32_t> measured_;
  SlotErrors errors_;
  std::vector<std::uint16_t> wildcardErrors_;
  std::vector<std::uint8_t> hidden_, written_;
  LossyLzwCompressor lzw_;
  LzwCodes codes_;
};

}  // namespace glyphmotion
