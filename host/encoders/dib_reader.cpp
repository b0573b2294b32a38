// SPDX-License-Identifier: MIT
#include "host/encoders/dib_reader.h"

#include <cstring>

#include "image/packed_dib.h"

namespace glyphmotion {

DibPixels ReadDib(std::span<const std::uint8_t> dib) noexcept {
  DibHeader header;
  if (dib.size() < sizeof header) return {};
  std::memcpy(&header, dib.data(), sizeof header);
  const std::size_t size = DibSize(header.biWidth, header.biHeight, header.biBitCount);
  if (header.biSize != sizeof header || header.biCompression != 0 || size == 0 || dib.size() < size) return {};
  DibPixels pixels;
  pixels.width = header.biWidth;
  pixels.height = header.biHeight;
  pixels.bits = header.biBitCount;
  pixels.stride = DibStride(pixels.width, pixels.bits);
  pixels.table = pixels.bits < 9 ? dib.data() + sizeof header : nullptr;
  pixels.stored = dib.data() + sizeof header + DibTableBytes(pixels.bits);
  return pixels;
}

void UnpackIndices(const DibPixels& dib, std::vector<std::uint8_t>& indices) {
  const auto width = static_cast<std::size_t>(dib.width);
  indices.resize(width * static_cast<std::size_t>(dib.height));
  for (int y = 0; y < dib.height; ++y) {
    const std::uint8_t* row = dib.Row(y);
    std::uint8_t* out = indices.data() + width * static_cast<std::size_t>(y);
    if (dib.bits == 8) {
      std::memcpy(out, row, width);
    } else if (dib.bits == 4) {
      for (std::size_t x = 0; x < width; ++x) out[x] = (row[x >> 1] >> (x & 1 ? 0 : 4)) & 15;
    } else {
      for (std::size_t x = 0; x < width; ++x) out[x] = (row[x >> 3] >> (7 - (x & 7))) & 1;
    }
  }
}

std::array<std::uint8_t, 768> UnpackPalette(const DibPixels& dib) noexcept {
  std::array<std::uint8_t, 768> palette{};
  if (!dib.table) return palette;
  for (std::size_t i = 0; i < std::size_t{1} << dib.bits; ++i)
    for (std::size_t c = 0; c < 3; ++c) palette[i * 3 + c] = dib.table[i * 4 + 2 - c];
  return palette;
}

namespace {

void UnpackPaletteRgba(const DibPixels& dib, int transparentIndex, std::vector<std::uint8_t>& rgba) {
  std::vector<std::uint8_t> indices;
  UnpackIndices(dib, indices);
  const auto palette = UnpackPalette(dib);
  for (std::size_t i = 0; i < indices.size(); ++i) {
    std::memcpy(&rgba[i * 4], &palette[std::size_t{indices[i]} * 3], 3);
    rgba[i * 4 + 3] = indices[i] == transparentIndex ? 0 : 255;
  }
}

}  // namespace

void UnpackRgba(const DibPixels& dib, int transparentIndex, std::vector<std::uint8_t>& rgba) {
  rgba.resize(std::size_t{4} * static_cast<std::size_t>(dib.width) * static_cast<std::size_t>(dib.height));
  if (dib.bits < 9) return UnpackPaletteRgba(dib, transparentIndex, rgba);
  const std::size_t step = dib.bits == 32 ? 4 : 3;
  std::uint8_t* out = rgba.data();
  for (int y = 0; y < dib.height; ++y) {
    const std::uint8_t* in = dib.Row(y);
    for (int x = 0; x < dib.width; ++x, in += step, out += 4) {
      out[0] = in[2];
      out[1] = in[1];
      out[2] = in[0];
      out[3] = step == 4 ? in[3] : 255;
    }
  }
}

}  // namespace glyphmotion
