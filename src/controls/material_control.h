// SPDX-License-Identifier: MIT
// The material held by a material button: its window word.
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

/// The control's .mtrl file: Material%05.5d.mtrl in the folder of per-control files; empty when there is none.
std::string MaterialPath(int id);

}  // namespace glyphmotion
