// SPDX-License-Identifier: MIT
// One palette for a whole animation: the exact colours if there are few enough, otherwise a colour octree pruned by
// error.
#pragma once

#include "image/colour.h"
#include "image/frame_list.h"

namespace glyphmotion {

/// Chooses one palette for all frames of a run with a colour octree, pruned by accumulated error.
///
/// frames   24-bit images, any sizes; only read.
/// count    in: colours wanted, 1..256, anything else means 256. out: colours delivered.
/// palette  out: 256 red, green, blue entries; those past `count` are zero.
///
/// Returns  false when memory ran out or an image could not be locked; `palette` is then unspecified.
/// Cost     a pass that ends with the first colour beyond `count`, then one over all pixels; at most 37449 nodes.
/// Source   the colour octree of Gervautz and Purgathofer, with pruning by quantisation error.
bool QuantiseFrames(const FrameList& frames, int& count, Palette& palette) noexcept;

}  // namespace glyphmotion
