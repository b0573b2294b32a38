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

ScreenPart Screen::DifferenceTo(const std::vector<std::uint8_t>& other) const {
  int left = width, top = height, right = 0, bottom = 0;
  const std::size_t stride = std::size_t{4} * static_cast<std::size_t>(width);
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* p = pixels.data() + stride * static_cast<std::size_t>(y);
    const std::uint8_t* q = other.data() + stride * static_cast<std::size_t>(y);
    if (std::memcmp(p, q, stride) == 0) continue;
    top = std::min(top, y);
    bottom = y + 1;
    int from = 0, to = width;
    while (std::memcmp(p + from * 4, q + from * 4, 4) == 0) ++from;
    while (std::memcmp(p + (to - 1) * 4, q + (to - 1) * 4, 4) == 0) --to;
    left = std::min(left, from);
    right = std::max(right, to);
  }
  if (bottom == 0) return {0, 0, 1, 1};
  return {left, top, right - left, bottom - top};
}

void Screen::Cut(const ScreenPart& part, bool alpha, std::vector<std::uint8_t>& out) const {
  const std::size_t step = alpha ? 4 : 3;
  out.resize(step * static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height));
  std::uint8_t* to = out.data();
  for (int y = 0; y < part.height; ++y) {
    const std::uint8_t* from = pixels.data() + OffsetOf(part.left, part.top + y);
    for (int x = 0; x < part.width; ++x, from += 4, to += step) std::memcpy(to, from, step);
  }
}

}  // namespace glyphmotion
