// SPDX-License-Identifier: MIT
// Texts and files of materials. What is read is also drawn, as small as it can be, and written: what was written reads
// as the same.
#include "materials/material.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>

#include "fuzz/readers.h"
#include "host/render/image_loader.h"
#include "materials/colour_text.h"
#include "materials/fountain.h"
#include "materials/material_text.h"
#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/files.h"

namespace glyphmotion::fuzz {
namespace {

// The time that a texture takes is the person's own choice.
void MakeSmall(TextureSpec& texture) {
  texture.MatrixSize %= 33;
  texture.CreaterCount %= 20;
  texture.BubbleCount %= 20;
  texture.Right = texture.Bottom = 12;
}

/// The bytes that `write` writes to the path that it gets; empty when it refuses.
std::string Written(const std::function<bool(const std::string&)>& write) {
  const std::string& path = FileOf({}, ".written");
  std::filesystem::remove(path);
  return write(path) ? ReadWholeFile(path).value_or("") : std::string();
}

}  // namespace

void ReadFountains(std::string_view input) {
  std::vector<FountainSpec> fountains;
  ReadFountainLibrary(FileOf(input), fountains);
  const std::string written = Written([&](auto& path) { return WriteFountainLibrary(path, fountains, 0); });
  std::vector<FountainSpec> again;
  ReadFountainLibrary(FileOf(written), again);
  Require(Written([&](auto& path) { return WriteFountainLibrary(path, again, 0); }) == written);
  for (int mode : {1, 2}) DefaultFountain(fountains.emplace_back(), mode);
  for (FountainSpec& fountain : fountains) {
    FountainToBitmap(fountain, 60, 2);
    for (int position : {0, 40, 100, 255}) FreePosition(fountain, position);
    SortMarkers(fountain);
    int positions[kMaxMarkers];
    while (RemoveMarker(fountain, MarkerPositions(fountain, 60, positions) / 2)) {
    }
  }
}

void ReadMaterialFiles(std::string_view input) {
  const MovableBlock block = LoadMaterial(FileOf(input), 0x123456, true);
  const std::string written = Written([&](auto& path) { return SaveMaterial(block.Handle(), path); });
  const BlockHandle again = LoadMaterial(FileOf(written), 0, true).Release();
  Require(Written([&](auto& path) { return SaveMaterial(again, path); }) == written);
  FreeMaterial(again);
  const MovableBlock decoded = HexDecode(HexEncode(input.data(), input.size()), input.size());
  const LockedBlock<std::uint8_t> bytes(decoded.Handle());
  Require(input.empty() || (bytes && std::memcmp(bytes.get(), input.data(), input.size()) == 0));
  HexDecode(std::string(input), input.size());
  const LockedBlock<Material> material(block.Handle());
  if (!material) return;
  MakeSmall(material->Texture);
  MaterialToBitmap(*material, 12, 10);
  FreeBlock(reinterpret_cast<BlockHandle>(static_cast<std::uintptr_t>(material->Tile.TileBitmap)));
}

// The first line is the text, in which {FILE} is a file of the rest.
void ReadMaterialTexts(std::string_view input) {
  SetImageLoader(input.size() % 16 ? ImageLoader(LoadPicture) : ImageLoader());
  const std::size_t end = std::min(input.find('\n'), input.size());
  std::string text(input.substr(0, end));
  if (const std::size_t at = text.find("{FILE}"); at != std::string::npos)
    text.replace(at, 6, FileOf(input.substr(std::min(end + 1, input.size()))));
  Material material;
  DefaultMaterial(material, 0);
  std::string error;
  const bool read = ParseMaterial(text, material, error);
  Require(read == error.empty());
  FreeBlock(HandleOf(material.Tile.TileBitmap));
  Colour colour = 0, again = 0;
  if (ParseColour(text, colour)) Require(ParseColour(HexColour(colour), again) && again == colour);
  HexDecode(text, sizeof(Material));
}

void ReadTextures(std::string_view input) {
  TextureLibrary library;
  ReadTextureLibrary(FileOf(input), library);
  if (library.textures.empty()) return;
  const std::string written = Written([&](auto& path) { return WriteTextureLibrary(path, library, {}); });
  TextureLibrary again;
  ReadTextureLibrary(FileOf(written), again);
  Require(Written([&](auto& path) { return WriteTextureLibrary(path, again, {}); }) == written);
  TextureSpec& texture = library.textures.front().parameters;
  MakeSmall(texture);
  GenerateTexture(texture, WholeOf(texture));
}

void ReadTiles(std::string_view input) {
  TileLibrary library;
  const std::string& path = FileOf(input);
  ReadTileLibrary(path, library);
  const std::string written = Written([&](auto& to) { return WriteTileLibrary(to, library, {}); });
  TileLibrary again;
  ReadTileLibrary(FileOf(written, ".mtx"), again);
  Require(Written([&](auto& to) { return WriteTileLibrary(to, again, {}); }) == written);
  for (const PackedDib& tile : library.tiles) TileTo24Bit(tile);
  TileSpec named{};
  SetTilePath(named, std::string(input.substr(0, 300)));
  named.TileIndex = static_cast<std::uint32_t>(input.size() % 4);
  for (int i = 0; i < 2; ++i) {  // the second time from what the run knows
    LoadTileOf(named);
    FreeBlock(HandleOf(named.TileBitmap));
  }
  for (std::uint32_t i = 0; i < 3; ++i) {
    TileSpec tile{};
    tile.Right = tile.Bottom = 40;
    const PackedDib loaded = LoadMatrixTile(path, i);
    tile.TileBitmap = WordOf(loaded.Handle());
    RenderTile(tile);
  }
}

}  // namespace glyphmotion::fuzz
