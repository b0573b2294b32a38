// SPDX-License-Identifier: MIT
// Tiles: one small bitmap repeated over the fill, and the binary libraries that hold groups of them.
#pragma once

#include <string>
#include <vector>

#include "materials/library_stamp.h"
#include "materials/material.h"

namespace glyphmotion {

/// The path in a record's field of 261 bytes, which may lack its NUL.
std::string PathOfTile(const TileSpec& tile);
/// Stores a path in the field, truncated to 260 bytes.
void SetTilePath(TileSpec& tile, const std::string& path) noexcept;

/// A new block with tile number `index` (from 0) of a library, byte for byte as it is stored; nothing when the file is
/// missing, foreign or short, or has no such tile. Items of another signature are counted but skipped.
PackedDib LoadMatrixTile(const std::string& path, std::uint32_t index) noexcept;

/// Loads TileBitmap from TilePath at TileIndex, if there is a path; the old handle is overwritten, not freed. If a
/// library with the name of a shipped one is missing or lacks the tile, the shipped library supplies it.
void LoadTileOf(TileSpec& tile) noexcept;

/// A new 24-bit bitmap of the size of the record's bounds, with the tile repeated from the top left corner without
/// mirroring; without a tile, the built-in one. Nothing on failure.
PackedDib RenderTile(const TileSpec& tile) noexcept;

/// A new 24-bit bitmap with the same picture: 1 bit gives black and white, 2 to 8 bits go through the palette, other
/// depths lose their top byte.
PackedDib TileTo24Bit(const PackedDib& bitmap) noexcept;

/// One library in memory.
struct TileLibrary {
  bool writeable = false;
  std::vector<PackedDib> tiles;
};

/// False when the file is missing or foreign; `library` is then unchanged. A truncated file gives the complete tiles,
/// and false.
bool ReadTileLibrary(const std::string& path, TileLibrary& library) noexcept;

/// Writes the library with Writeable as given in it, after a copy of the old file as path + ".bak".
bool WriteTileLibrary(const std::string& path, const TileLibrary& library, const LibraryStamp& stamp) noexcept;

}  // namespace glyphmotion
