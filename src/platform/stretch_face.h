// SPDX-License-Identifier: MIT
// A face painted for a screen of 96 to the inch, on a finer one.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Fills `to` with `from`, each pixel the mean of what lies under it: whole factors repeat pixels, others keep edges as
/// sharp as they can be. Cost: at most four pixels read for each one written when `to` is the larger.
void StretchFace(const DrawRequest& from, const DrawRequest& to);

}  // namespace glyphmotion
