// SPDX-License-Identifier: MIT
// The skinned look: buttons with softly shaded round faces on a background that runs from light to a breath of the
// accent. All colours come from the desktop's, so that a dark desktop keeps its own; one of high contrast has no skin.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The one colour of the program's own.
constexpr Colour kAccent = MakeColour(0x40, 0x7E, 0xBD);

/// Whether the dialogs of the current run look so: what the host wishes, for as long as its dialog runs.
void UseSkin(bool use);

/// The first thing in a dialog's procedure. When the skin is in use, the dialog's push buttons look skinned from its
/// start on, going on to behave as buttons, and its background is painted here. True when the message needs no more.
bool HandleSkin(Dialog& dialog, const Message& message);

}  // namespace glyphmotion
