// SPDX-License-Identifier: MIT
// The fountain library dialog (9997).
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Shows the library's fountains, modal over `owner`, and lets the user delete and arrange them; OK writes the library.
void ManageFountainLibrary(Dialog& owner);

}  // namespace glyphmotion
