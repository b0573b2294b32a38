// SPDX-License-Identifier: MIT
// The tile dialog (9981).
#pragma once

#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Chooses a tile on a copy with a bitmap of its own, modal over `owner`. True on OK: `tile` is then the copy, and the
/// bitmap it held before is the caller's to free. On Cancel the copy's bitmap is freed and `tile` stays as it was. If a
/// tile cannot be copied, that is reported and counts as cancelled.
bool RunTileDialog(Dialog& owner, TileSpec& tile);

}  // namespace glyphmotion
