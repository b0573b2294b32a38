// SPDX-License-Identifier: MIT
#include "fuzz/fuzz_file.h"
#include "materials/tile.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TileLibrary library;
  const std::string& path = fuzz::FileOf(data, size);
  ReadTileLibrary(path, library);
  for (const PackedDib& tile : library.tiles) TileTo24Bit(tile);
  for (std::uint32_t i = 0; i < 3; ++i) {
    TileSpec tile{};
    tile.Right = tile.Bottom = 40;
    const PackedDib loaded = LoadMatrixTile(path, i);
    tile.TileBitmap = WordOf(loaded.Handle());
    RenderTile(tile);
  }
  return 0;
}
