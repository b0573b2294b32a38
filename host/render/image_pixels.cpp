// SPDX-License-Identifier: MIT
// The pixels of an Image, without a word about how they are stored.
#include <glyphmotion/render.h>

#include "host/encoders/dib_reader.h"

namespace glyphmotion {

std::span<const std::uint8_t> Image::Row(int y) const {
  const DibPixels pixels = ReadDib(dib);
  if (y < 0 || y >= pixels.height) return {};
  return {pixels.Row(y), (static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.bits) + 7) / 8};
}

std::vector<std::uint8_t> Image::Palette() const {
  const DibPixels pixels = ReadDib(dib);
  if (!pixels.table) return {};
  const auto palette = UnpackPalette(pixels);
  return {palette.begin(), palette.begin() + (std::ptrdiff_t{3} << pixels.bits)};
}

std::vector<std::uint8_t> Image::Indices() const {
  std::vector<std::uint8_t> indices;
  if (const DibPixels pixels = ReadDib(dib); pixels.table) UnpackIndices(pixels, indices);
  return indices;
}

std::vector<std::uint8_t> Image::Rgba() const {
  std::vector<std::uint8_t> rgba;
  if (const DibPixels pixels = ReadDib(dib)) UnpackRgba(pixels, transparentIndex, rgba);
  return rgba;
}

}  // namespace glyphmotion
