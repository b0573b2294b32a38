// SPDX-License-Identifier: MIT
// Marks, frame by frame, the pixels that did not change from the picture shown before, so that remapping can paint them
// with one reserved index and the file compresses well.
#pragma once

#include <functional>

#include "image/frame_list.h"
#include "image/packed_dib.h"

namespace glyphmotion {

/// Gives every frame but the first a one-bit mask (FrameRecord::mask, of the first frame's size; 1 = unchanged) and
/// lets its transparentIndex carry `superColour` until the remapping replaces it. frames 24- or 32-bit images; only the
/// records are changed. previous out: the running picture, made from the first frame; owned by the caller, also on
/// failure. progress called with (i, count) before each frame.
///
/// Returns   false when memory ran out or an image could not be locked.
bool SupercompressFrames(FrameList& frames, Colour superColour, PackedDib& previous,
                         const std::function<void(int, int)>& progress);

}  // namespace glyphmotion
