// SPDX-License-Identifier: MIT
#include "controls/material_control.h"

#include <algorithm>
#include <cstdio>

#include "materials/shipped.h"
#include "materials/tile.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

constexpr int kArrowWidth = 16, kInset = 2;

BlockHandle BlockOf(const Dialog& dialog, int id) { return HandleOf(GetData(dialog, id)); }

// Replaces the preview by one of the present settings. False, with the old one kept, when it cannot be rendered.
bool RenderPreview(Dialog& dialog, int id, Material& material) {
  const ControlRectangle place = RectangleOf(dialog, id);
  PackedDib preview = MaterialToBitmap(material, place.right - place.left - kArrowWidth - 2 * kInset,
                                       place.bottom - place.top - 2 * kInset);
  if (!preview) return false;
  FreeBlock(HandleOf(material.Preview));
  material.Preview = WordOf(preview.Release());
  return true;
}

bool RenderPreviewAndAverage(Dialog& dialog, int id, Material& material) {
  if (!RenderPreview(dialog, id, material)) return false;
  PackedDib preview(HandleOf(material.Preview));
  material.AverageColour = AverageBitmapColour(preview);
  preview.Release();
  return true;
}

void SaveLine(Dialog& dialog, int id, std::string& line) {
  if (const auto material = LockMaterial(dialog, id); material) line += HexEncode(material.get(), sizeof(Material));
}

// The old block goes without a look at its handles only as far as the new one is concerned: nothing stored in a line is
// ever followed. What the old block itself owns is freed with it.
void LoadLine(Dialog& dialog, int id, const std::string& value) {
  MovableBlock block = HexDecode(value, sizeof(Material));
  if (!block) return;
  FreeMaterial(BlockOf(dialog, id));
  SetData(dialog, id, WordOf(block.Release()));
  const auto material = LockMaterial(dialog, id);
  material->Preview = 0;
  material->ButtonState = 0;
  material->Tile.TileBitmap = 0;
  if (material->Kind == kTile) LoadTileOf(material->Tile);
  RenderPreviewAndAverage(dialog, id, *material);
  Invalidate(dialog, id);
}

// A material has no persistent variable: its own file remembers it.
void StoreNothing(Dialog&, int, Variable&) {}
void ShowNothing(Dialog&, int, const Variable&) {}

}  // namespace

const ControlFamily kMaterialFamily = {"MATLBT", SaveLine, LoadLine, StoreNothing, ShowNothing, nullptr, nullptr};

LockedBlock<Material> LockMaterial(const Dialog& dialog, int id) noexcept {
  return LockedBlock<Material>(BlockOf(dialog, id));
}

std::string MaterialPath(int id) {
  char name[32];
  std::snprintf(name, sizeof(name), "Material%.5d.mtrl", id);
  return JoinPath(PerControlFolder(), name).substr(0, 260);
}

void InitialiseMaterial(Dialog& dialog, int id, Colour colour) {
  FreeMaterial(BlockOf(dialog, id));
  SetData(dialog, id, 0);
  const std::string path = MaterialPath(id);
  MovableBlock block = LoadMaterial(path, colour, !path.empty() && !IsShiftDown());
  SetData(dialog, id, WordOf(block.Release()));
  const auto material = LockMaterial(dialog, id);
  if (!material) return;
  // The default library is taken whatever the file said.
  FreeBlock(HandleOf(material->Tile.TileBitmap));
  SetTilePath(material->Tile, LibraryPath(kTileLibraryName));
  LoadTileOf(material->Tile);
  RenderPreviewAndAverage(dialog, id, *material);
}

void DestroyMaterial(Dialog& dialog, int id) {
  const BlockHandle block = BlockOf(dialog, id);
  if (!block) return;
  if (const auto material = LockMaterial(dialog, id); material) {
    FreeBlock(HandleOf(material->Preview));
    FreeBlock(HandleOf(material->Tile.TileBitmap));
    material->Preview = material->Tile.TileBitmap = 0;
  }
  SaveMaterial(block, MaterialPath(id));
  FreeMaterial(block);
  SetData(dialog, id, 0);
}

}  // namespace glyphmotion
