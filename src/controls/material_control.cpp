// SPDX-License-Identifier: MIT
#include "controls/material_control.h"

#include <algorithm>
#include <cstdio>

#include "controls/face_painting.h"
#include "controls/fountain_control.h"
#include "materials/shipped.h"
#include "materials/tile.h"
#include "platform/encoding.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr int kArrowWidth = 16, kInset = 2;
constexpr std::size_t kLongestCaption = 260;  // bytes
constexpr std::size_t kLongestPath = 260;     // characters
constexpr std::uint32_t kFacePressed = 1, kArrowPressed = 2;

MaterialWindows& Windows() { return CurrentRun().Member<MaterialWindows>(); }

BlockHandle BlockOf(const Dialog& dialog, int id) { return HandleOf(GetData(dialog, id)); }

// Renders a new preview of the current settings. False, with the old one kept, when it cannot be rendered.
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
  const auto held = LockMaterial(dialog, id);
  if (!held) return;
  // Handles are meaningless in a stored form; zeros make documents reproducible.
  Material material = *held;
  material.Preview = material.Fountain.Preview = material.Tile.TileBitmap = 0;
  line += HexEncode(&material, sizeof material);
}

// Handles stored in a line are never followed. The old block is freed together with everything it owns.
void LoadLine(Dialog& dialog, int id, const std::string& value) {
  MovableBlock block = HexDecode(value, sizeof(Material));
  if (!block) return;
  FreeMaterial(BlockOf(dialog, id));
  SetData(dialog, id, WordOf(block.Release()));
  const auto material = LockMaterial(dialog, id);
  material->Preview = 0;
  material->ButtonState &= ~kPressedBits;
  material->Tile.TileBitmap = 0;
  if (material->Kind == kTile) LoadTileOf(material->Tile);
  RenderPreviewAndAverage(dialog, id, *material);
  Invalidate(dialog, id);
}

// The kind menu and the editors ---------------------------------------------------------------------------------------

void PostChange(Dialog& dialog, int id, const Material& material) {
  Post(dialog, {kMessageFillChanged, material.Kind, id});
}

// The mean colour, and so the caption's colour, stays that of the last edit.
void SetKind(Dialog& dialog, int id, std::uint32_t kind) {
  const auto material = LockMaterial(dialog, id);
  if (!material) return;
  material->Kind = kind;
  if (!RenderPreview(dialog, id, *material)) return;
  Invalidate(dialog, id);
  PostChange(dialog, id, *material);
}

void KindMenu(Dialog& dialog, int id) {
  std::uint32_t kind = 0;
  if (const auto material = LockMaterial(dialog, id); material) kind = material->Kind;
  MenuItem items[4];
  for (int i = 0; i < 4; ++i)
    items[i] = {kCommandFirstKind + i, LoadText(kTextFirstMaterialKind + i), kind == static_cast<std::uint32_t>(i)};
  const ControlRectangle place = RectangleOf(dialog, id);
  const int chosen =
      PopupMenu(&dialog, id, place.right - place.left - kArrowWidth, (place.bottom - place.top) / 2, items);
  if (chosen >= kCommandFirstKind && chosen < kCommandFirstKind + 4) {
    SetKind(dialog, id, static_cast<std::uint32_t>(chosen - kCommandFirstKind));
  }
}

bool EditKind(Dialog& dialog, Material& material) {
  switch (material.Kind) {
    case kSolid: {
      const auto colour = AskColour(&dialog, material.Colour);
      if (colour) material.Colour = *colour;
      return colour.has_value();
    }
    case kGradient: {
      GradientSpec gradient = material.Gradient;
      FountainSpec fountain = material.Fountain;
      if (!Windows().editGradient || !Windows().editGradient(dialog, gradient, fountain)) return false;
      material.Gradient = gradient;
      material.Fountain = fountain;
      return true;
    }
    case kTexture: {
      TextureSpec texture = material.Texture;
      if (!Windows().editTexture || !Windows().editTexture(dialog, texture)) return false;
      material.Texture = texture;
      return true;
    }
    case kTile: {
      TileSpec tile = material.Tile;
      if (!Windows().editTile || !Windows().editTile(dialog, tile)) return false;
      material.Tile = tile;
      return true;
    }
    default:
      return false;
  }
}

// While an editor is open the windows below may be destroyed, and the record with them. So a copy is edited, and the
// result is stored in the record as it is by then. The dialog is notified whether or not the edit was accepted.
void EditMaterial(Dialog& dialog, int id) {
  Material edited;
  if (const auto before = LockMaterial(dialog, id); before) {
    edited = *before;
  } else {
    return;
  }
  const BlockHandle oldTile = HandleOf(edited.Tile.TileBitmap);
  const bool accepted = EditKind(dialog, edited);
  const BlockHandle newTile = HandleOf(edited.Tile.TileBitmap);
  const auto material = LockMaterial(dialog, id);
  if (newTile != oldTile) FreeBlock(material ? oldTile : newTile);
  if (!material) return;
  if (accepted) {
    edited.Preview = material->Preview;
    edited.ButtonState = material->ButtonState;
    *material = edited;
    RenderPreviewAndAverage(dialog, id, *material);
    Invalidate(dialog, id);
  }
  PostChange(dialog, id, *material);
}

// Moving the pointer away does not cancel a press, and the arrow takes precedence over the face.
void Release(Dialog& dialog, int id, Material& material) {
  if (!HasCapture(dialog, id)) return;
  ReleaseMouse(dialog);
  const std::uint32_t pressed = material.ButtonState & kPressedBits;
  material.ButtonState &= ~kPressedBits;
  if (pressed) Invalidate(dialog, id);
  if (pressed & kArrowPressed) {
    PostToControl(dialog, id, {kMessageKindMenu, 0, 0});
  } else if (pressed & kFacePressed) {
    PostToControl(dialog, id, {kMessageCommand, kCommandEditMaterial, 0});
  }
}

// Another window took the mouse capture: nothing was chosen.
void LetGo(Dialog& dialog, int id, Material& material) {
  material.ButtonState &= ~kPressedBits;
  Invalidate(dialog, id);
}

void Press(Dialog& dialog, int id, Material& material, const Message& message) {
  const ControlRectangle place = RectangleOf(dialog, id);
  const int width = place.right - place.left, height = place.bottom - place.top;
  const auto x = static_cast<int>(message.a), y = static_cast<int>(message.b);
  CaptureMouse(dialog, id);
  if (x < 0 || y < 0 || x >= width || y >= height) return;
  material.ButtonState |= x >= width - kArrowWidth ? kArrowPressed : kFacePressed;
  Invalidate(dialog, id);
}

std::int64_t InputMaterial(Dialog& dialog, int id, const Message& message) {
  switch (message.number) {
    case kMessageLeftDown:
    case kMessageDoubleClick:
      if (const auto material = LockMaterial(dialog, id); material) Press(dialog, id, *material, message);
      return true;
    case kMessageLeftUp:
      if (const auto material = LockMaterial(dialog, id); material) Release(dialog, id, *material);
      return true;
    case kMessageCaptureLost:
      if (const auto material = LockMaterial(dialog, id); material) LetGo(dialog, id, *material);
      return true;
    case kMessageKeyDown:
      if (message.a == kKeySpace) return EditMaterial(dialog, id), true;
      if (message.a == kKeyF2) return EditMaterial(dialog, id), true;
      if (message.a == kKeyDown || message.a == kKeyMenu) return KindMenu(dialog, id), true;
      return false;
    case kMessageInitialiseMaterial:
      InitialiseMaterial(dialog, id, static_cast<Colour>(message.b));
      return Invalidate(dialog, id), true;
    case kMessageDuplicateMaterial:
      return static_cast<std::int64_t>(WordOf(DuplicateMaterial(dialog, id).Release()));
    case kMessageKindMenu:
      return KindMenu(dialog, id), true;
    case kMessageCommand:
      if (message.a == kCommandEditMaterial) return EditMaterial(dialog, id), true;
      if (message.a < kCommandFirstKind || message.a > kCommandFirstKind + 3) return false;
      return SetKind(dialog, id, static_cast<std::uint32_t>(message.a - kCommandFirstKind)), true;
    default:
      return false;
  }
}

// The face ------------------------------------------------------------------------------------------------------------

void SoftEdge(const DrawRequest& request, Rect rect, bool sunken) {
  const Colour light = GetSystemColour(SystemColour::Highlight), soft = GetSystemColour(SystemColour::Light3D);
  const Colour shadow = GetSystemColour(SystemColour::ButtonShadow), dark = GetSystemColour(SystemColour::DarkShadow);
  FrameFace(request, rect, sunken ? dark : light, sunken ? light : dark);
  FrameFace(request, Shrunk(rect, 1), sunken ? shadow : soft, sunken ? soft : shadow);
}

// A triangle pointing right: its upright side on the left, its tip at the right in the middle.
void PaintTriangle(const DrawRequest& request, Rect arrow, int p, bool enabled) {
  const int middle = (arrow.top + arrow.bottom) / 2;
  arrow.top = std::max(arrow.top, middle - 10);
  arrow.bottom = std::min(arrow.bottom, middle + 10);
  const int left = arrow.left + 5 + p, top = arrow.top + 5 + p, tip = arrow.right - 6 + p,
            bottom = arrow.bottom - 5 + p;
  const Colour fill = GetSystemColour(enabled ? SystemColour::DarkShadow : SystemColour::Highlight);
  const Colour edge = GetSystemColour(SystemColour::ButtonShadow);
  const int centre = middle + p;
  // The intersections of a row with the two slanted sides, rounded up as for polygons.
  const auto crossing = [&](int from, int y, int to) {
    return left + ((tip - left) * (y - from) + (to - from) - 1) / (to - from);
  };
  for (int y = top; y < bottom; ++y) {
    const int right = y < centre ? crossing(top, y, centre) : bottom - centre > 0 ? crossing(bottom, y, centre) : tip;
    FillFace(request, {left, y, right, y + 1}, fill);
  }
  for (int x = left; x < tip; ++x) {
    const int y = top + (centre - top) * (x - left) / std::max(tip - left, 1);
    FillFace(request, {x, y, x + 1, y + 1}, edge);
  }
}

void PaintMaterial(Dialog& dialog, int id, const DrawRequest& request) {
  const auto material = LockMaterial(dialog, id);
  const std::uint32_t pressed = material ? material->ButtonState : 0;
  const bool enabled = IsEnabled(dialog, id);
  const Colour face = GetSystemColour(SystemColour::ButtonFace);
  const Rect whole = WholeOf(request);
  const Rect button{0, 0, request.width - kArrowWidth, request.height};
  const Rect arrow{button.right, 0, request.width, request.height};
  FrameFace(request, whole, 0, 0);
  FillFace(request, arrow, face);
  SoftEdge(request, arrow, pressed & kArrowPressed);
  PaintTriangle(request, arrow, pressed & kArrowPressed ? 1 : 0, enabled);
  SoftEdge(request, button, pressed & kFacePressed);
  const Rect inset = Shrunk(button, kInset);
  FillFace(request, inset, face);
  if (!enabled) return;
  if (material) PaintBitmap(request, inset, DibView(HandleOf(material->Preview)));
  const std::string caption(CutText(GetText(dialog, id), kLongestCaption));
  if (material && !caption.empty()) {
    PaintText(request, inset, caption, CaptionColour(material->AverageColour), TextPlace::Centre);
  }
  if (FocusOf(dialog) == id) DottedFrame(request, Shrunk(inset, 1));
}

}  // namespace

const ControlFamily kMaterialFamily = {"MATLBT", SaveLine,      LoadLine,      nullptr,
                                       nullptr,  PaintMaterial, InputMaterial, DestroyMaterial};

LockedBlock<Material> LockMaterial(const Dialog& dialog, int id) noexcept {
  return LockedBlock<Material>(BlockOf(dialog, id));
}

void SetMaterialWindows(const MaterialWindows& windows) { Windows() = windows; }

Colour CaptionColour(Colour average) noexcept {
  const int level = (RedOf(average) * 77 / 255 + GreenOf(average) * 150 / 255 + BlueOf(average) * 28 / 255) & 0xFF;
  return level < 0x81 ? 0xFFFFFF : 0;
}

bool SetMaterial(Dialog& dialog, int id, const Material& source) {
  MovableBlock block(AllocateBlock(sizeof(Material)));
  const LockedBlock<Material> material(block.Handle());
  if (!material) return false;
  *material = source;
  material->Preview = material->Fountain.Preview = 0;
  material->ButtonState &= ~kPressedBits;
  FreeMaterial(BlockOf(dialog, id));
  SetData(dialog, id, WordOf(block.Release()));
  RenderPreviewAndAverage(dialog, id, *material);
  Invalidate(dialog, id);
  return true;
}

MovableBlock DuplicateMaterial(const Dialog& dialog, int id) noexcept {
  MovableBlock block(DuplicateBlock(BlockOf(dialog, id)));
  const LockedBlock<Material> copy(block.Handle());
  if (!copy) return {};
  copy->Preview = 0;
  const BlockHandle tile = HandleOf(copy->Tile.TileBitmap);
  copy->Tile.TileBitmap = WordOf(DuplicateBlock(tile));
  if (tile && !HandleOf(copy->Tile.TileBitmap)) return {};  // the library's tile would replace it
  return block;
}

std::string MaterialPath(int id) {
  char name[32];
  std::snprintf(name, sizeof(name), "Material%.5d.mtrl", id);
  return std::string(CutCharacters(JoinPath(PerControlFolder(), name), kLongestPath));
}

void InitialiseMaterial(Dialog& dialog, int id, Colour colour) {
  FreeMaterial(BlockOf(dialog, id));
  SetData(dialog, id, 0);
  const std::string path = MaterialPath(id);
  MovableBlock block = LoadMaterial(path, colour, !path.empty() && !IsShiftDown());
  SetData(dialog, id, WordOf(block.Release()));
  const auto material = LockMaterial(dialog, id);
  if (!material) return;
  // Always the default library, whatever path the file contains.
  FreeBlock(HandleOf(material->Tile.TileBitmap));
  SetTilePath(material->Tile, LibraryReference(kTileLibraryName));
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
  EnsureFolder(PerControlFolder());
  SaveMaterial(block, MaterialPath(id));
  FreeMaterial(block);
  SetData(dialog, id, 0);
}

}  // namespace glyphmotion
