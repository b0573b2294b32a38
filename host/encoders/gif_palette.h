// SPDX-License-Identifier: MIT
// The palettes of a GIF, and the order of the common one.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace glyphmotion {

/// A palette under construction. A colour has an id, its number throughout the animation, and a slot, its place in the
/// palette.
struct GifPalette {
  std::vector<std::uint32_t> colours;  ///< by slot: red, green << 8, blue << 16
  std::vector<std::int16_t> slotOfId;  ///< -1: none
  int reserved = 0;                    ///< entries in use, including a transparent one past the colours

  int SlotOf(std::size_t id) const { return id < slotOfId.size() ? slotOfId[id] : -1; }
  void Put(std::size_t id, std::size_t slot, std::uint32_t colour);
  void Append(std::size_t id, std::uint32_t colour) { Put(id, colours.size(), colour); }
  void Reserve(int entries) { reserved = reserved > entries ? reserved : entries; }
  /// Log2 of the number of entries in the file.
  int Bits() const;
};

/// A frame's requirements on the common palette.
struct GifWants {
  std::vector<std::uint16_t> must;  ///< ids of the colours it has to write
  bool wildcard = false;            ///< whether a transparent index is useful to it
  std::size_t pixels = 0;
};

/// Adds `ids` to the palette, in the order that gives the frames the shortest codes. `colours` holds the colour of each
/// id.
void PutInOrder(std::span<const GifWants> frames, std::vector<std::uint16_t> ids,
                std::span<const std::uint32_t> colours, GifPalette& palette);

}  // namespace glyphmotion
