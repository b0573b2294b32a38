// SPDX-License-Identifier: MIT
// The sample arrives with all its colours; a palette format wants it with a palette of its own.
#pragma once

#include <cstdint>
#include <span>

#include "image/packed_dib.h"

namespace glyphmotion {

/// The picture of a 24-bit packed DIB's bytes in at most 256 colours made for it: 1 to 8 bits, owned by the caller.
/// Nothing when memory is out.
PackedDib ReduceToPalette(std::span<const std::uint8_t> dib);

}  // namespace glyphmotion
