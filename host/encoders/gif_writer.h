// SPDX-License-Identifier: MIT
// A writer of animated GIFs: the same bytes on every platform, as small as the format allows without changing a pixel.
//
// Each frame is cropped to what it changes; pixels that stay as they were may be written as a transparent index where
// that compresses better. Colours are renumbered by first use and frequency, so that the palette and the first codes
// are as short as they can be; a frame whose colours don't fit into the common palette gets one of its own.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace glyphmotion {

/// One picture of an animation. Everything is borrowed for the call.
struct GifFrame {
  int width = 0, height = 0;                   ///< pixels; placed at the screen's top left, cut to the screen
  std::span<const std::uint8_t> indices;       ///< width * height, rows top down
  std::span<const std::uint8_t, 768> palette;  ///< 256 times red, green, blue
  int delay = 0;                               ///< 1/100 s, 0 to 65535 (limited to that)
  int transparentIndex = -1;                   ///< -1: none
  bool standAlone = false;  ///< transparent pixels show what is behind the animation, not the frame before
};

/// Builds one file. Memory: three pictures of two bytes a pixel, 64 MiB of cropped frames at the most, and the
/// compressed stream.
class GifWriter {
 public:
  /// The screen's size in pixels, 1 to 65535 each.
  GifWriter(int width, int height);
  ~GifWriter();
  GifWriter(GifWriter&&) noexcept;

  /// Appends a frame. False, with nothing changed, when its size and its indices don't fit together.
  bool Add(const GifFrame& frame);
  /// A comment for the file; the last one stands.
  void SetComment(const std::string& text);
  /// How often several frames play: 0 to 65535, where 0, unless said otherwise, is for ever.
  void SetLoops(int loops);
  /// Ends the animation and gives the whole file. Empty without a frame. The writer is spent afterwards.
  std::vector<std::uint8_t> Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace glyphmotion
