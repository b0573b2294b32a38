// SPDX-License-Identifier: MIT
// The gradient held by a fountain button: its window word.
#pragma once

#include "controls/families.h"

namespace glyphmotion {

/// The family of fountain buttons, stem FOUNTB.
extern const ControlFamily kFountainFamily;

}  // namespace glyphmotion
