// SPDX-License-Identifier: MIT
// Named textures and the text files that hold them, one group a file.
#pragma once

#include <string>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

constexpr int kTextureTypes = 6;

/// The defaults of every field, bounds and reserved bytes zero.
void DefaultTextureSpec(TextureSpec& spec) noexcept;

/// The picture of a texture, a new 24-bit bitmap of the size of its bounds; nothing for a type outside 0 to 5 and on
/// failure.
PackedDib GenerateTexture(const TextureSpec& spec) noexcept;

}  // namespace glyphmotion
