// SPDX-License-Identifier: MIT
// Lossy frames of a GIF: pixels may be written as near colours, or stay as they are on the screen, where that makes the
// file smaller. Every pixel is judged by what the viewer then sees against what the frame wants, so that errors do not
// add up from frame to frame. What a lossy frame shows is then compressed once more without loss, and so is the frame
// as it is meant: the one that costs least in bits and errors is kept.
#pragma once

#include <cstdint>
#include <unordered_map>
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

  /// 0 to 9, as of GifFrameCompressor.
  void SetEffort(int effort) { exact_.SetEffort(effort); }
  /// Once `stop` is true the compression is cut short; null: not used.
  void SetStop(const std::atomic<bool>* stop) {
    lzw_.SetStop(stop);
    exact_.SetStop(stop);
  }

  /// Compresses a frame whose symbols are slots of the palette. May change `pixels`, and reduces `crop` to what the
  /// frame still changes, unless the crop is cleared after it.
  GifStream Compress(GifPixels& pixels, const GifPalette& palette, GifBox& crop, GifDisposal disposal);

 private:
  struct Frame;

  void MeasurePalette(const GifPalette& palette);
  void MeasureScreen(const GifPalette& palette, Frame& frame) const;
  std::uint64_t Search(Frame& near, GifDisposal disposal);
  Frame ShownBy(const Frame& near, const GifPalette& palette, GifDisposal disposal) const;
  void Show(const Frame& frame, const GifPalette& palette, GifDisposal disposal);

  int width_;
  LossyLimits limits_;
  std::vector<std::uint32_t> screen_;  // red, green << 8, blue << 16, or kClear
  std::vector<std::uint32_t> measured_;
  SlotErrors errors_;
  std::unordered_map<std::uint32_t, std::uint8_t> slots_;  // of the measured colours
  std::vector<std::uint8_t> hidden_, written_;
  LossyLzwCompressor lzw_;
  LzwCodes codes_;
  GifFrameCompressor exact_;
};

}  // namespace glyphmotion
