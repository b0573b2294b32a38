// SPDX-License-Identifier: MIT
// The gradient dialog (9995) and the small one for a marker's position (9996).
#pragma once

#include <functional>
#include <optional>

#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Edits a gradient and its fountain on a copy, modal over `owner`. True on OK, with the copy written back; on Cancel
/// both are unchanged.
bool EditGradient(Dialog& owner, GradientSpec& gradient, FountainSpec& fountain);

/// Prompts for a marker's position, 0 to 255, starting from `position`. Nothing when cancelled. `show`, if set, is
/// called with every position while the user chooses.
std::optional<int> AskMarkerPosition(Dialog& owner, int position, const std::function<void(int)>& show);

}  // namespace glyphmotion
