// SPDX-License-Identifier: MIT
// Bitmap 9908: the tile that replaces one whose library cannot be read, so that a fill can always be made.
#pragma once

#include <cstdint>

namespace glyphmotion {

constexpr int kBuiltinTileSide = 16;

/// Pixels row by row from the top, 0x00BBGGRR. Seamless: a weave of two strands.
extern const std::uint32_t kBuiltinTile[kBuiltinTileSide * kBuiltinTileSide];

}  // namespace glyphmotion
