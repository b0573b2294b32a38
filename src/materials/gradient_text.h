// SPDX-License-Identifier: MIT
// The text of a gradient and a fountain.
#pragma once

#include <string>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

/// What follows "gradient:" and "fountain:". Errors: as with ParseMaterial.
bool ParseGradient(const std::string& text, Material& material, std::string& error);
bool ParseFountain(const std::string& text, Material& material, std::string& error);

/// The valid names in fountain:NAME.
std::vector<std::string> FountainNames();

}  // namespace glyphmotion
