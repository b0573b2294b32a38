// SPDX-License-Identifier: MIT
#pragma once

#include "image/packed_dib.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The still frame of the dialog's current effect: 24 bits, owned by the caller; nothing when there is no selection, no
/// text, or when out of memory.
PackedDib RenderSample(Dialog& dialog) noexcept;

/// The colour around the frame in the sample window: the uniform background, or kNoColour.
Colour SampleSurround(const Dialog& dialog) noexcept;

}  // namespace glyphmotion
