// SPDX-License-Identifier: MIT
// Reads the packed DIBs of Image::dib, as far as the encoders need it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace glyphmotion {

/// The parts of a packed DIB. Borrows the bytes it was made from.
struct DibPixels {
  int width = 0, height = 0;  ///< pixels; zero when the bytes are not a packed DIB of a stored form
  int bits = 0;               ///< 1, 4, 8, 24 or 32
  std::size_t stride = 0;
  const std::uint8_t* table = nullptr;  ///< 2^bits entries of blue, green, red, 0; below 9 bits
  const std::uint8_t* stored = nullptr;

  explicit operator bool() const noexcept { return width > 0; }
  /// Row y of the picture, 0 at the top.
  const std::uint8_t* Row(int y) const noexcept { return stored + stride * static_cast<std::size_t>(height - 1 - y); }
};

/// Checks the header against the size of `dib`. Returns an empty DibPixels if they do not match.
DibPixels ReadDib(std::span<const std::uint8_t> dib) noexcept;

/// Palette indices of a 1, 4 or 8 bit image, one byte each, rows top down, into `indices` (width * height).
void UnpackIndices(const DibPixels& dib, std::vector<std::uint8_t>& indices);

/// The colour table as 256 times red, green, blue; entries past 2^bits are zero.
std::array<std::uint8_t, 768> UnpackPalette(const DibPixels& dib) noexcept;

/// Red, green, blue, alpha of any depth, rows top down, into `rgba` (4 * width * height). Below 32 bits alpha is 255,
/// and 0 where the index is `transparentIndex`.
void UnpackRgba(const DibPixels& dib, int transparentIndex, std::vector<std::uint8_t>& rgba);

}  // namespace glyphmotion
