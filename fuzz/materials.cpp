// SPDX-License-Identifier: MIT
// Texts and files of materials. What is read is also drawn, as small as it can be.
#include "materials/material.h"

#include "fuzz/readers.h"
#include "materials/fountain.h"
#include "materials/material_text.h"
#include "materials/texture_library.h"
#include "materials/tile.h"

namespace glyphmotion::fuzz {
namespace {

// The time that a texture takes is the person's own choice.
void MakeSmall(TextureSpec& texture) {
  texture.MatrixSize %= 33;
  texture.CreaterCount %= 20;
  texture.BubbleCount %= 20;
  texture.Right = texture.Bottom = 12;
}

}  // namespace

void ReadFountains(std::string_view input) {
  std::vector<FountainSpec> fountains;
  ReadFountainLibrary(FileOf(input), fountains);
  for (FountainSpec& fountain : fountains) {
    FountainToBitmap(fountain, 60, 2);
    FreePosition(fountain, 40);
    SortMarkers(fountain);
  }
}

void ReadMaterialFiles(std::string_view input) {
  const MovableBlock block = LoadMaterial(FileOf(input), 0x123456, true);
  const LockedBlock<Material> material(block.Handle());
  if (!material) return;
  MakeSmall(material->Texture);
  MaterialToBitmap(*material, 12, 10);
  FreeBlock(reinterpret_cast<BlockHandle>(static_cast<std::uintptr_t>(material->Tile.TileBitmap)));
}

void ReadMaterialTexts(std::string_view input) {
  Material material;
  DefaultMaterial(material, 0);
  std::string error;
  const std::string text(input);
  const bool read = ParseMaterial(text, material, error);
  Require(read == error.empty());
  HexDecode(text, sizeof(Material));
}

void ReadTextures(std::string_view input) {
  TextureLibrary library;
  ReadTextureLibrary(FileOf(input), library);
  if (library.textures.empty()) return;
  TextureSpec& texture = library.textures.front().parameters;
  MakeSmall(texture);
  GenerateTexture(texture, WholeOf(texture));
}

void ReadTiles(std::string_view input) {
  TileLibrary library;
  const std::string& path = FileOf(input);
  ReadTileLibrary(path, library);
  for (const PackedDib& tile : library.tiles) TileTo24Bit(tile);
  for (std::uint32_t i = 0; i < 3; ++i) {
    TileSpec tile{};
    tile.Right = tile.Bottom = 40;
    const PackedDib loaded = LoadMatrixTile(path, i);
    tile.TileBitmap = WordOf(loaded.Handle());
    RenderTile(tile);
  }
}

}  // namespace glyphmotion::fuzz
