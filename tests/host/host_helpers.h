// SPDX-License-Identifier: MIT
// What several tests of the program share: synthetic bitmaps, a folder that vanishes, commands of the shell.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "temporary_folder.h"

namespace glyphmotion::testing {

using glyphmotion::TemporaryFolder;

using Bytes = std::vector<std::uint8_t>;

inline Bytes ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
inline void WriteBytes(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}
inline std::string ReadText(const std::string& path) {
  const Bytes bytes = ReadBytes(path);
  return {bytes.begin(), bytes.end()};
}

/// The bytes of a packed DIB. `value(x, y)` gives an index, or 0xAABBGGRR with red lowest, y down from the top.
template <typename Value>
Bytes MakeDib(int width, int height, int bits, const Bytes& palette, Value value) {
  const std::size_t stride = ((static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32) * 4;
  const std::size_t table = bits < 9 ? std::size_t{4} << bits : 0;
  Bytes dib(40 + table + stride * static_cast<std::size_t>(height));
  const auto put = [&](std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) dib[at + i] = static_cast<std::uint8_t>(number >> (8 * i));
  };
  put(0, 40);
  put(4, static_cast<std::uint32_t>(width));
  put(8, static_cast<std::uint32_t>(height));
  put(12, 1u | static_cast<std::uint32_t>(bits) << 16);
  for (std::size_t i = 0; i < table / 4 && i * 3 + 2 < palette.size(); ++i)
    for (std::size_t c = 0; c < 3; ++c) dib[40 + i * 4 + c] = palette[i * 3 + 2 - c];
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = dib.data() + 40 + table + stride * static_cast<std::size_t>(height - 1 - y);
    for (int x = 0; x < width; ++x) {
      const auto pixel = static_cast<std::uint32_t>(value(x, y));
      if (bits == 1) {
        row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | (pixel & 1) << (7 - x % 8));
      } else if (bits == 4) {
        row[x / 2] = static_cast<std::uint8_t>(row[x / 2] | (pixel & 15) << (x % 2 ? 0 : 4));
      } else if (bits == 8) {
        row[x] = static_cast<std::uint8_t>(pixel);
      } else {
        std::uint8_t* p = row + x * (bits / 8);
        p[0] = static_cast<std::uint8_t>(pixel >> 16);
        p[1] = static_cast<std::uint8_t>(pixel >> 8);
        p[2] = static_cast<std::uint8_t>(pixel);
        if (bits == 32) p[3] = static_cast<std::uint8_t>(pixel >> 24);
      }
    }
  }
  return dib;
}

inline Image ImageOf(const Bytes& dib, int width, int height, int bits, int number, int delay) {
  Image image;
  image.dib = dib;
  image.width = width;
  image.height = height;
  image.bits = bits;
  image.number = number;
  image.delay = delay;
  return image;
}

}  // namespace glyphmotion::testing
