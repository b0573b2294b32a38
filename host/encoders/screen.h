// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {

/// A rectangle of a screen.
struct ScreenPart {
  int left = 0, top = 0, width = 0, height = 0;
};

/// What a viewer sees: images composed on a screen one after the other. Red, green, blue, alpha, rows top down.
struct Screen {
  int width, height;
  std::vector<std::uint8_t> pixels;

  /// Fully transparent.
  Screen(int w, int h)
      : width(w), height(h), pixels(std::size_t{4} * static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
  std::uint8_t* Row(int y) {
    return pixels.data() + std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(y);
  }

  /// Of a pixel among the bytes.
  std::size_t OffsetOf(int x, int y) const {
    return std::size_t{4} *
           (static_cast<std::size_t>(width) * static_cast<std::size_t>(y) + static_cast<std::size_t>(x));
  }

  void Clear();
  /// Composes an image at the top left, clipped to the screen. `standAlone`: clears the screen first.
  void Show(const DibPixels& dib, int transparentIndex, bool standAlone);
  /// The bounding box of the difference to another screen's pixels, at least one pixel in size.
  ScreenPart DifferenceTo(const std::vector<std::uint8_t>& other) const;
  /// Copies a part out of the screen, with or without alpha.
  void Cut(const ScreenPart& part, bool alpha, std::vector<std::uint8_t>& out) const;

 private:
  std::vector<std::uint8_t> image_;
};

}  // namespace glyphmotion
