// SPDX-License-Identifier: MIT
// The fountain library dialog (9997).
#pragma once

#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Shows the library's fountains, modal over `owner`, and lets the user delete and arrange them; OK writes the library,
/// Cancel leaves it as it was. An entry that equals `fountain` is selected at first.
///
/// Returns  true when the user took an entry for use, which also writes the library: its colours and markers are in
///          `fountain` then. Otherwise `fountain` stays as it was.
bool ManageFountainLibrary(Dialog& owner, FountainSpec& fountain);

}  // namespace glyphmotion
