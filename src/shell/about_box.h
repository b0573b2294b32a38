// SPDX-License-Identifier: MIT
// What the program is: its name in motion, its version, its licence.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Modal.
void ShowAboutBox(Dialog& owner);

}  // namespace glyphmotion
