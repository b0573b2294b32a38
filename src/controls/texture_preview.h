// SPDX-License-Identifier: MIT
// The window behind the texture dialog's Preview button: the texture at its real size, behind and in a text.
#pragma once

#include "materials/material.h"

namespace glyphmotion {

/// The texture's picture as a fill of that size would be; nothing on failure.
PackedDib TextureToBitmap(const TextureSpec& texture, int width, int height) noexcept;

/// Modal over the dialog that runs.
void ShowTexturePreview(const TextureSpec& texture);

}  // namespace glyphmotion
