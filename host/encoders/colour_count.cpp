// SPDX-License-Identifier: MIT
#include "host/encoders/colour_count.h"

#include <array>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {

void ColourCount::Mark(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  const std::uint32_t colour = red | std::uint32_t{green} << 8 | std::uint32_t{blue} << 16;
  std::uint64_t& word = seen_[colour / 64];
  const std::uint64_t bit = std::uint64_t{1} << (colour % 64);
  count_ += (word & bit) == 0;
  word |= bit;
}

void ColourCount::Add(std::span<const std::uint8_t> bytes, int transparentIndex) {
  const DibPixels dib = ReadDib(bytes);
  if (!dib) return;
  seen_.resize((std::size_t{1} << 24) / 64);
  if (dib.bits < 9) {
    UnpackIndices(dib, pixels_);
    std::array<bool, 256> used{};
    for (const std::uint8_t index : pixels_) used[index] = true;
    const auto palette = UnpackPalette(dib);
    for (std::size_t i = 0; i < used.size(); ++i) {
      if (used[i] && static_cast<int>(i) != transparentIndex)
        Mark(palette[3 * i], palette[3 * i + 1], palette[3 * i + 2]);
    }
    return;
  }
  UnpackRgba(dib, -1, pixels_);
  for (std::size_t i = 0; i < pixels_.size(); i += 4) {
    if (pixels_[i + 3] != 0) Mark(pixels_[i], pixels_[i + 1], pixels_[i + 2]);
  }
}

}  // namespace glyphmotion
