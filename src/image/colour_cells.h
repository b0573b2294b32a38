// SPDX-License-Identifier: MIT
// The cache of a colour matcher: the index of every 24-bit colour, computed for a cube of 8 x 8 x 8 colours when the
// first colour of the cube is looked up. A table of 2^24 bytes stores cube after cube, so that neighbouring colours
// share cache lines and untouched cubes cost no memory (the system supplies zeroed pages on demand). A look-up is one
// load; a cube is filled from the few palette entries that can be nearest to some colour in it. The cubes match the
// 15-bit colours of the fast remap, which only fills them differently.
#pragma once

#include <array>
#include <cstdint>

#include "image/remap.h"
#include "platform/memory.h"

namespace glyphmotion {

constexpr std::uint32_t kCubeCount = 32768;
constexpr std::uint32_t kCubeColours = 512;

/// The last picture that was matched row by row, and its indices: rows that return are copied.
struct MatchedRows {
  MovableBlock block;             ///< of `bytes`, locked as long as it exists
  std::uint8_t* bytes = nullptr;  ///< rows of width blue-green-red triples, width indices and 1 once filled
  int width = 0, height = 0;

  /// Prepares for pictures of a size; false when out of memory.
  bool Fit(int newWidth, int newHeight) noexcept;
  std::uint8_t* Row(int r) const { return bytes + static_cast<std::size_t>(r) * RowBytes(); }
  std::size_t RowBytes() const { return 4 * static_cast<std::size_t>(width) + 1; }
};

struct ColourMatcher::State {
  Palette palette{};
  int depth = 8;
  int count = 256;  ///< entries offered, 0 to 256
  RemapOptions options;

  MatchedRows rows;
  MovableBlock block;                    ///< of `table`, locked as long as it exists
  std::uint8_t* table = nullptr;         ///< kCubeCount x kCubeColours indices, or null before PrepareMatching
  std::array<bool, kCubeCount> known{};  ///< cubes that have been filled

  /// The entries' channels in separate arrays, for the vector loops; entries past `count` are not read.
  std::array<std::int32_t, 256> red{}, green{}, blue{};
};

/// A channel's bits in the number of a colour: five select the cube, three the position in it.
constexpr auto kPlaces = [] {
  std::array<std::array<std::uint32_t, 256>, 3> places{};
  for (std::uint32_t v = 0; v < 256; ++v) {
    places[0][v] = (v >> 3) << 19 | (v & 7) << 6;
    places[1][v] = (v >> 3) << 14 | (v & 7) << 3;
    places[2][v] = (v >> 3) << 9 | (v & 7);
  }
  return places;
}();

/// Allocates the table; false when out of memory. Call before the first Match.
bool PrepareMatching(ColourMatcher::State& state) noexcept;

/// Fills one cube.
void FillCube(ColourMatcher::State& state, std::uint32_t cube) noexcept;

/// The index for a pixel, by the nearest colour or the fast remap, depending on the options. Channels are 0 to 255.
inline std::uint8_t Match(ColourMatcher::State& state, std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  const std::uint32_t place = kPlaces[0][red] | kPlaces[1][green] | kPlaces[2][blue];
  const std::uint32_t cube = place / kCubeColours;
  if (!state.known[cube]) [[unlikely]]
    FillCube(state, cube);
  return state.table[place];
}

/// Packs `width` indices into a row of `bits` (1, 4 or 8) per pixel: the lowest bits of each, the first pixel in the
/// highest bits.
void PackIndices(std::uint8_t* row, const std::uint8_t* indices, int width, int bits) noexcept;

}  // namespace glyphmotion
