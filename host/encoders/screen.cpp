// SPDX-License-Identifier: MIT
#include "host/encoders/screen.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {

void Screen::Clear() { std::fill(pixels.begin(), pixels.end(), std::uint8_t{0}); }

void Screen::Show(const DibPixels& dib, int transparentIndex, bool standAlone) {
  UnpackRgba(dib, transparentIndex, image_);
  if (standAlone) Clear();
  const bool solid = standAlone || transparentIndex < 0 || dib.bits > 8;
  const int columns = std::min(width, dib.width);
  for (int y = 0; y < std::min(height, dib.height); ++y) {
    const std::uint8_t* in =
        image_.data() + std::size_t{4} * static_cast<std::size_t>(dib.width) * static_cast<std::size_t>(y);
    std::uint8_t* out = Row(y);
    if (solid) {
      std::memcpy(out, in, std::size_t{4} * static_cast<std::size_t>(columns));
      continue;
    }
    for (int x = 0; x < columns; ++x, in += 4, out += 4)
      if (in[3]) std::memcpy(out, in, 4);
  }
}

}  // namespace glyphmotion
