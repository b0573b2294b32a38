// SPDX-License-Identifier: MIT
// The material of a material button: its user data.
#pragma once

#include "controls/families.h"
#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The family of material buttons, stem MATLBT.
extern const ControlFamily kMaterialFamily;

/// The control's material, locked; empty when the control has none.
LockedBlock<Material> LockMaterial(const Dialog& dialog, int id) noexcept;

/// Loads the control's material from its .mtrl file (or, without one or with Shift down, makes the default with
/// `colour`), points it at the default tile library and renders its preview.
void InitialiseMaterial(Dialog& dialog, int id, Colour colour);

/// Saves the control's .mtrl file and frees the material.
void DestroyMaterial(Dialog& dialog, int id);

/// Stores a material in the control, which takes over its tile, and renders the preview anew; the record's own preview
/// is ignored. False when out of memory, with the control unchanged and the tile still owned by the caller.
bool SetMaterial(Dialog& dialog, int id, const Material& material);

/// A copy of the control's record with its own duplicate of the tile and no preview, owned by the caller
/// (FreeMaterial); nothing on failure.
MovableBlock DuplicateMaterial(const Dialog& dialog, int id) noexcept;

/// Private messages of the control. The control also posts messages to itself: to open the kind menu, and
/// kMessageCommand, which with 99 edits the current kind and with 100 to 103 sets it.
constexpr std::uint32_t kMessageKindMenu = 0x52D;
/// b: the initial colour. InitialiseMaterial.
constexpr std::uint32_t kMessageInitialiseMaterial = 0x590;
/// The result is the handle of a copy, DuplicateMaterial's; 0 on failure.
constexpr std::uint32_t kMessageDuplicateMaterial = 0x591;
constexpr int kCommandEditMaterial = 99, kCommandFirstKind = 100;

/// The editor windows of the kinds other than a colour. Each edits a copy and returns whether it was accepted; an empty
/// one counts as cancelled.
struct MaterialWindows {
  bool (*editGradient)(Dialog& dialog, GradientSpec& gradient, FountainSpec& fountain) = nullptr;
  bool (*editTexture)(Dialog& dialog, TextureSpec& texture) = nullptr;
  /// Works on its own bitmap: if accepted, `tile` has a new one, and the caller frees the old one.
  bool (*editTile)(Dialog& dialog, TileSpec& tile) = nullptr;
};
void SetMaterialWindows(const MaterialWindows& windows);

/// White or black, whichever is more readable on a face of this mean colour.
Colour CaptionColour(Colour average) noexcept;

/// The control's .mtrl file: Material%05.5d.mtrl in the folder of per-control files; empty when there is none.
std::string MaterialPath(int id);

}  // namespace glyphmotion
