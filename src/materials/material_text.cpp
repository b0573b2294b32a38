// SPDX-License-Identifier: MIT
#include "materials/material_text.h"

#include "materials/tile.h"

namespace glyphmotion {
namespace {

constexpr char kForms[] = "#RRGGBB, gradient:..., fountain:..., texture:..., tile:FILE#N or mtrl:FILE";

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool ParseMaterialFile(const std::string& path, Material& material, std::string& error) {
  MovableBlock block = LoadMaterial(path, kNoColour, true);
  const LockedBlock<Material> loaded(block.Handle());
  // The defaults carry the colour that was handed in, which no file of ours holds in its top byte.
  if (!loaded || loaded->Colour == kNoColour) {
    error = "cannot read the material file '" + path + "': a .mtrl file of 1270 bytes is wanted";
    return false;
  }
  FreeBlock(HandleOf(material.Tile.TileBitmap));
  FreeBlock(HandleOf(material.Preview));
  material = *loaded;
  loaded->Tile.TileBitmap = 0;
  return true;
}

}  // namespace

bool ParseColour(const std::string& text, Colour& colour) noexcept {
  if ((text.size() != 4 && text.size() != 7) || text[0] != '#') return false;
  const std::size_t digits = text.size() == 4 ? 1 : 2;
  int channel[3];
  for (std::size_t i = 0; i < 3; ++i) {
    const int high = HexDigit(text[1 + i * digits]), low = HexDigit(text[i * digits + digits]);
    if (high < 0 || low < 0) return false;
    channel[i] = high * 16 + low;
  }
  colour = MakeColour(channel[0], channel[1], channel[2]);
  return true;
}

bool ParseMaterial(const std::string& text, Material& material, std::string& error) {
  Colour colour = 0;
  if (ParseColour(text, colour)) {
    material.Kind = kSolid;
    material.Colour = colour;
    return true;
  }
  if (text.starts_with("mtrl:")) return ParseMaterialFile(text.substr(5), material, error);
  error = "'" + text + "' is no material: " + kForms + " is wanted";
  return false;
}

}  // namespace glyphmotion
