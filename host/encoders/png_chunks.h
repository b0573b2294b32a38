// SPDX-License-Identifier: MIT
// PNG pictures and animations in memory: libpng compresses, this adds the chunks of an animation (APNG).
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace glyphmotion {

enum class PngKind : std::uint8_t { Palette = 3, Rgb = 2, Rgba = 6 };

/// A picture to compress: rows top down, tightly packed (1, 3 or 4 bytes a pixel).
struct PngPicture {
  int width = 0, height = 0;
  PngKind kind = PngKind::Rgba;
  std::span<const std::uint8_t> pixels;
  std::span<const std::uint8_t> palette;    ///< 3 bytes an entry, at most 256; Palette only
  int transparentIndex = -1;                ///< Palette only
  int level = 6;                            ///< zlib's, 1 to 9
  const std::atomic<bool>* stop = nullptr;  ///< once it is true the picture is given up; null: not used
};

/// A whole PNG file; empty when libpng fails, or it was given up.
std::vector<std::uint8_t> WritePng(const PngPicture& picture);

/// Position and duration of a frame of an animation.
struct PngFramePlace {
  int left = 0, top = 0;
  int delayMilliseconds = 0;
};

/// Builds an animation chunk by chunk. Frames overwrite the pixels under them and are not disposed of.
class PngAnimation {
 public:
  /// Plays `loops` times; 0: for ever.
  explicit PngAnimation(int frameCount, int loops = 0) : frameCount_(frameCount), loops_(loops) {}
  /// The bytes that a frame adds to the file, which is what WritePng has made of it; the first frame must have the size
  /// of the whole animation. All frames are of the first one's kind, palette and transparent index.
  std::vector<std::uint8_t> Add(const std::vector<std::uint8_t>& file, const PngFramePlace& place);
  /// The last bytes.
  static std::vector<std::uint8_t> End();

 private:
  int frameCount_, loops_;
  std::uint32_t sequence_ = 0;
  bool first_ = true;
};

}  // namespace glyphmotion
