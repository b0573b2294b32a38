// SPDX-License-Identifier: MIT
// Scales a face painted at 96 dpi to a screen of higher density.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Scales `from` to `to` with an area filter: whole factors repeat pixels, others keep edges as sharp as possible.
/// Cost: at most four pixels read for each one written when `to` is the larger.
void StretchFace(const DrawRequest& from, const DrawRequest& to);

}  // namespace glyphmotion
