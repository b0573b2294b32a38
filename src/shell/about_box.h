// SPDX-License-Identifier: MIT
// The about box: the animated name, the version, the licence.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Modal.
void ShowAboutBox(Dialog& owner);

}  // namespace glyphmotion
