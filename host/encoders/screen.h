// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {

/// What a viewer sees: images laid on a screen one after the other. Red, green, blue, alpha, rows top down.
struct Screen {
  int width, height;
  std::vector<std::uint8_t> pixels;

  /// Transparent all over.
  Screen(int w, int h)
      : width(w), height(h), pixels(std::size_t{4} * static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
  std::uint8_t* Row(int y) {
    return pixels.data() + std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(y);
  }

  void Clear();
  /// Lays an image at the top left, cut to the screen. `standAlone`: nothing of the images before it stays.
  void Show(const DibPixels& dib, int transparentIndex, bool standAlone);

 private:
  std::vector<std::uint8_t> image_;
};

}  // namespace glyphmotion
