// SPDX-License-Identifier: MIT
// The text of a texture.
#pragma once

#include <string>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

/// What follows "texture:". Errors: as with ParseMaterial.
bool ParseTexture(const std::string& text, Material& material, std::string& error);

/// The valid names in texture:NAME.
std::vector<std::string> TextureNames();

}  // namespace glyphmotion
