// SPDX-License-Identifier: MIT
// The dialog templates: dialog 1000 and one panel an effect. They are the only source of ids, captions, ranges, places
// and of which control belongs to which persistent key. The panels' controls are copied into dialog 1000 at the places
// given, which are therefore places in dialog 1000.
#pragma once

#include <span>

#include "platform/dialog.h"

namespace glyphmotion {

/// Dialog 1000, 488 by 336 dialog units.
extern const DialogTemplate kMainDialogTemplate;

extern const DialogTemplate kBackgroundHyperspacePanel, kBackgroundIrisPanel, kBreakerPanel, kCubistPanel,
    kElasticPanel, kEventHorizonPanel, kFusePanel, kGumdropsPanel, kHyperspacePanel, kIrisPanel, kLaserPanel,
    kNebulaPanel, kPhasersOnStunPanel, kPinchPanel, kPulsePanel, kRipplePanel, kRadarPanel, kSimplePanel,
    kSingularityPanel, kVortexPanel, kWhiteNoisePanel;

/// The windows behind a material button, with ids in texture_controls.h and tile_controls.h.
extern const DialogTemplate kTextureDialogTemplate, kTexturePreviewTemplate, kTileDialogTemplate;
/// The gradient editor (9995), a marker's position (9996), the library of fountains (9997).
extern const DialogTemplate kGradientDialogTemplate, kMarkerPositionDialogTemplate, kFountainLibraryDialogTemplate;

/// The panels in the order of the effect list.
std::span<const DialogTemplate* const> PanelTemplates() noexcept;

/// The control tied to a persistent key, in dialog 1000 or any panel; null for none. `panel`, if given, gets its
/// template.
const ControlTemplate* FindControlOfKey(const char* key, const DialogTemplate** panel = nullptr) noexcept;
/// The control of an id, likewise.
const ControlTemplate* FindControlOfId(int id, const DialogTemplate** panel = nullptr) noexcept;

}  // namespace glyphmotion
