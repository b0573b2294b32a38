// SPDX-License-Identifier: MIT
// The two owner-drawn controls of the main dialog that show the sample.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// The sample window: the current effect's still frame, centred on its background colour, in a frame of one pixel.
/// Without a frame the field is empty. Sets the size text.
void DrawSampleWindow(Dialog& dialog, const DrawRequest& request);

/// The size text under the sample window, one line.
void DrawSizeText(const Dialog& dialog, const DrawRequest& request);

}  // namespace glyphmotion
