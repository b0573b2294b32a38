// SPDX-License-Identifier: MIT
// The window of the texture dialog's Preview button: the texture at its actual size, behind and inside a text.
#pragma once

#include "materials/material.h"

namespace glyphmotion {

/// The texture as a fill of that size; nothing on failure.
PackedDib TextureToBitmap(const TextureSpec& texture, int width, int height) noexcept;

/// Modal over the running dialog.
void ShowTexturePreview(const TextureSpec& texture);

}  // namespace glyphmotion
