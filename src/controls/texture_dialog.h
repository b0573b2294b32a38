// SPDX-License-Identifier: MIT
// The texture dialog (9998).
#pragma once

#include "materials/material.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Edits a texture on a copy, modal over `owner`. True on OK, with the copy written back.
bool EditTexture(Dialog& owner, TextureSpec& texture);

}  // namespace glyphmotion
