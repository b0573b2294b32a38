// SPDX-License-Identifier: MIT
// The fountain library dialog (9997).
#pragma once

#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Shows the library's fountains, modal over `owner`, and lets the user delete and reorder them; OK writes the library,
/// Cancel leaves it unchanged. An entry that equals `fountain` is selected initially.
///
/// Returns true when the user chose an entry, which also writes the library; `fountain` then has its colours and
/// markers. Otherwise `fountain` is unchanged.
bool ManageFountainLibrary(Dialog& owner, FountainSpec& fountain);

}  // namespace glyphmotion
