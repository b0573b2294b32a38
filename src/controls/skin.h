// SPDX-License-Identifier: MIT
// The skinned look: buttons with softly shaded rounded faces on a background that fades from light to a hint of the
// accent colour. Colours derive from the desktop's, so a dark desktop stays dark; high contrast mode has no skin.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The program's only own colour.
constexpr Colour kAccent = MakeColour(0x40, 0x7E, 0xBD);

/// Whether the dialogs of the current run are skinned: the host's choice, valid while its dialog runs.
void UseSkin(bool use);

/// Call first in a dialog's procedure. If the skin is on, this skins the dialog's push buttons, which still behave as
/// buttons, and paints its background. True when the message needs no further handling.
bool HandleSkin(Dialog& dialog, const Message& message);

}  // namespace glyphmotion
