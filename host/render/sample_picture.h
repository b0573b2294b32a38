// SPDX-License-Identifier: MIT
// The sample picture is true colour; palette formats need it reduced to a palette.
#pragma once

#include <cstdint>
#include <span>

#include "image/packed_dib.h"

namespace glyphmotion {

/// Reduces a 24-bit packed DIB to at most 256 colours chosen for it. The result has 1 to 8 bits a pixel and is owned by
/// the caller; empty when out of memory.
PackedDib ReduceToPalette(std::span<const std::uint8_t> dib);

}  // namespace glyphmotion
