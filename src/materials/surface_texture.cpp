// SPDX-License-Identifier: MIT
#include "materials/surface_texture.h"

namespace glyphmotion {
namespace {

bool noiseBuilt = false;

}  // namespace

bool NoiseTablesBuilt() noexcept { return noiseBuilt; }

}  // namespace glyphmotion
