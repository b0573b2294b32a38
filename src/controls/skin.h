// SPDX-License-Identifier: MIT
// The skinned look: buttons with softly shaded round faces on a background that runs from light to a breath of the
// accent. All colours come from the desktop's, so that a dark or contrasting desktop keeps its own.
#pragma once

#include "image/colour.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The one colour of the program's own.
constexpr Colour kAccent = MakeColour(0x40, 0x7E, 0xBD);

/// Whether the program's dialogs look so: what the host wishes, for as long as its dialog runs.
void UseSkin(bool use) noexcept;

/// For the start of a dialog: when the skin is in use, all its push buttons look skinned from now on. They go on
/// behaving as buttons.
void SkinDialog(Dialog& dialog);

/// For a dialog's kMessagePaintBackground. 0 when the skin is not in use: the face stays plain.
std::int64_t PaintSkinBackground(const Message& message);

}  // namespace glyphmotion
