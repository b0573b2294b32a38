// SPDX-License-Identifier: MIT
// The dialog templates: dialog 1000 here, the panel of each effect in a panel_<name>.h of its own. They are the only
// source of ids, captions, ranges, places and of which control belongs to which persistent key. The panels' controls
// are copied into dialog 1000 at the places given, which are therefore places in dialog 1000.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Dialog 1000, 488 by 336 dialog units.
extern const DialogTemplate kMainDialogTemplate;

/// The windows behind a material button, with ids in texture_controls.h and tile_controls.h.
extern const DialogTemplate kTextureDialogTemplate, kTexturePreviewTemplate, kTileDialogTemplate;
/// The gradient editor (9995), a marker's position (9996), the library of fountains (9997).
extern const DialogTemplate kGradientDialogTemplate, kMarkerPositionDialogTemplate, kFountainLibraryDialogTemplate;

}  // namespace glyphmotion
