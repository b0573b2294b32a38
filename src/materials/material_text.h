// SPDX-License-Identifier: MIT
// Materials as people write them on a command line.
#pragma once

#include <string>

#include "materials/material.h"

namespace glyphmotion {

/// Reads one of
///   #RRGGBB | gradient:... | fountain:... | texture:NAME | tile:FILE#N | mtrl:FILE
/// into `material`, which holds a valid record (defaults); what the text does not say stays as it is. False, with one
/// sentence in `error` that names the value and what is allowed, when the text is none of these or a file cannot be
/// read.
bool ParseMaterial(const std::string& text, Material& material, std::string& error);

/// "#RRGGBB" or "#RGB" to 0x00BBGGRR.
bool ParseColour(const std::string& text, Colour& colour) noexcept;

}  // namespace glyphmotion
