// SPDX-License-Identifier: MIT
#include "materials/material_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "materials/colour_text.h"
#include "materials/gradient_text.h"
#include "materials/shipped.h"
#include "materials/text_parts.h"
#include "materials/texture_text.h"
#include "materials/tile.h"
#include "platform/nearest_name.h"
#include "platform/run_state.h"
#include "resources/shipped_tiles.h"

namespace glyphmotion {
namespace {

constexpr char kForms[] =
    "write #RRGGBB, the name of a colour, gradient:..., fountain:..., texture:NAME, tile:NAME, tile:FILE#N, mtrl:FILE "
    "or image:FILE";

ImageLoader& Loader() { return CurrentRun().Member<ImageLoader>(); }

// The index of a shipped tile; -1 for none of that name.
int FindTileName(const std::string& name) {
  const auto* found = std::find_if(std::begin(kShippedTileNames), std::end(kShippedTileNames),
                                   [&](const char* known) { return Plain(known) == Plain(name); });
  return found == std::end(kShippedTileNames) ? -1 : static_cast<int>(found - kShippedTileNames);
}

bool ParseTile(const std::string& text, Material& material, std::string& error) {
  const std::size_t hash = text.rfind('#');
  std::string path = text.substr(0, hash);
  double number = 1;
  if (const int named = hash == std::string::npos ? FindTileName(text) : -1; named >= 0) {
    number = named + 1;
    path.clear();
  }
  if (hash != std::string::npos && !NumberWithin("a tile's number", text.substr(hash + 1), 1, 1e6, true, number, error))
    return false;
  const auto index = static_cast<std::uint32_t>(number) - 1;
  const bool shipped = path.empty() || path == kTileLibraryName;
  const std::vector<std::string> paths = shipped ? LibraryPathsOf(kTileLibraryName) : std::vector{path};
  const auto found = std::find_if(paths.begin(), paths.end(),
                                  [&](const std::string& library) { return bool(LoadMatrixTile(library, index)); });
  if (found != paths.end()) {
    path = *found;
  } else if (shipped && ShippedLibraryPath(kTileLibraryName).empty()) {
    return Fail(error, NoShippedLibrary(kTileLibraryName));
  } else {
    if (shipped) path = kTileLibraryName;
    const std::string suggestion = Suggestion(path, {std::begin(kShippedTileNames), std::end(kShippedTileNames)});
    if (hash == std::string::npos && path.find('.') == std::string::npos) {
      return Fail(error, "there is no tile " + Quote(path) +
                             "; write the name of a shipped tile, or a library and a number, such as FILE.mtx#2" +
                             suggestion);
    }
    return Fail(error, "cannot read tile " + std::to_string(index + 1) + " of " + Quote(path) +
                           "; name an .mtx library with at least that many tiles" + suggestion);
  }
  if (path.size() >= sizeof(material.Tile.TilePath))
    return Fail(error, "the path " + Quote(path) + " is longer than 260 bytes; use a shorter one");
  SetTilePath(material.Tile, path);
  material.Tile.TileIndex = index;
  material.Tile.TileBitmap = 0;
  material.Kind = kTile;
  return true;
}

bool ParseMaterialFile(const std::string& path, Material& material, std::string& error) {
  return ReadMaterialFile(path, material) ||
         Fail(error, "cannot read the material file " + Quote(path) + "; name a .mtrl file of 1270 bytes");
}

bool ParseImage(const std::string& path, Material& material, std::string& error) {
  if (!Loader())
    return Fail(error, "pictures cannot be read here; write tile:FILE#N instead of " + Quote("image:" + path));
  PackedDib picture = Loader()(path, error);
  if (!picture) {
    if (error.empty()) error = "cannot read the picture " + Quote(path);
    return false;
  }
  PackedDib tile = TileTo24Bit(picture);
  if (!tile) return Fail(error, "the picture " + Quote(path) + " is too large for a tile; use a smaller one");
  material.Tile.TileBitmap = WordOf(tile.Release());
  SetTilePath(material.Tile, "");
  material.Tile.TileIndex = 0;
  material.Kind = kTile;
  return true;
}

}  // namespace

bool ParseMaterial(const std::string& text, Material& material, std::string& error) {
  static constexpr struct {
    std::string_view prefix;
    bool (*parse)(const std::string&, Material&, std::string&);
  } forms[] = {{"gradient:", ParseGradient}, {"fountain:", ParseFountain}, {"texture:", ParseTexture},
               {"tile:", ParseTile},         {"mtrl:", ParseMaterialFile}, {"image:", ParseImage}};
  error.clear();
  Colour colour = 0;
  if (LooksLikeColour(text)) {
    if (!ColourPart(text, colour, error)) return false;
    material.Kind = kSolid;
    material.Colour = colour;
    return true;
  }
  for (const auto& form : forms) {
    if (text.starts_with(form.prefix)) return form.parse(text.substr(form.prefix.size()), material, error);
  }
  return Fail(error, Quote(text) + " is not a fill; " + kForms + ColourSuggestion(text));
}

void SetImageLoader(ImageLoader loader) { Loader() = std::move(loader); }

std::vector<std::string> TileNames() {
  std::vector<std::string> names;
  for (const std::string& path : LibraryPathsOf(kTileLibraryName)) {
    TileLibrary library;
    ReadTileLibrary(path, library);
    for (std::size_t i = names.size(); i < library.tiles.size(); ++i) {
      const DibView view(library.tiles[i]);
      const bool named = path == ShippedLibraryPath(kTileLibraryName) && i < std::size(kShippedTileNames);
      names.push_back("#" + std::to_string(i + 1) + " " + std::to_string(view.Width()) + " x " +
                      std::to_string(view.Height()) + (named ? std::string(" ") + kShippedTileNames[i] : ""));
    }
  }
  return names;
}

}  // namespace glyphmotion
