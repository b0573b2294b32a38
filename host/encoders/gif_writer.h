// SPDX-License-Identifier: MIT
// A writer of animated GIFs: the same bytes on every platform, as small as the format allows without changing a pixel.
// Each frame is cropped to what it changes; unchanged pixels may be written as a transparent index where that
// compresses better. Colours are renumbered by first use and frequency, so that the palette and the first codes are as
// short as they can be; a frame whose colours do not fit into the common palette gets a local one.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace glyphmotion {

/// One picture of an animation. Everything is borrowed for the call.
struct GifFrame {
  int width = 0, height = 0;                   ///< pixels; placed at the top left of the screen, clipped to it
  std::span<const std::uint8_t> indices;       ///< width * height, rows top down
  std::span<const std::uint8_t, 768> palette;  ///< 256 times red, green, blue
  int delay = 0;                               ///< 1/100 s, clamped to 0 to 65535
  int transparentIndex = -1;                   ///< -1: none
  bool standAlone = false;  ///< transparent pixels stay transparent instead of showing the previous frame
};

/// Builds one file, without loss or with it (gif_lossy.h). Memory: three pictures of two bytes per pixel, at most 64
/// MiB of cropped frames, the compressed stream, and what each thread compresses with.
class GifWriter {
 public:
  /// The screen's size in pixels, 1 to 65535 each. threads: as in Workers; the bytes do not depend on it.
  GifWriter(int width, int height, int threads = 1);
  ~GifWriter();
  GifWriter(GifWriter&&) noexcept;

  /// Appends a frame. False, with nothing changed, when its size does not match its number of indices.
  bool Add(const GifFrame& frame);
  /// Sets the comment of the file; the last call wins.
  void SetComment(const std::string& text);
  /// Sets how often several frames play: 0 to 65535; 0, the default, is for ever.
  void SetLoops(int loops);
  /// How lossy the compression is: 0, the default, for not at all, to 200. Before the first frame. The file is never
  /// larger than without loss.
  void SetLoss(int loss);
  /// 0 to 9: time for a smaller file.
  void SetEffort(int effort);
  /// Once `stop` is true the file is given up, and Finish returns nothing; null: not used.
  void SetStop(const std::atomic<bool>* stop);
  /// Ends the animation and returns the whole file; empty without a frame. The writer cannot be used afterwards.
  std::vector<std::uint8_t> Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace glyphmotion
