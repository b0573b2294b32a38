// SPDX-License-Identifier: MIT
// GIF's form of LZW compression: variable code size, deferred clear, and a choice of symbols per pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace glyphmotion {

/// When a dictionary that is full gives way to an empty one.
enum class ClearRule : std::uint8_t {
  WhenFull,  ///< at once: best for textures that change all the time
  WhenWorse  ///< when strings get markedly shorter than they have been: best for patterns that come again
};

/// Compresses symbols into codes, least significant bit first, without GIF's sub-blocks.
///
/// symbols   one a pixel, each below 2^minCodeSize.
/// free      empty, or one flag a pixel: nonzero where `wildcard` says the same as the symbol and may be written
///           instead, whichever the dictionary has the longer string for.
/// minCodeSize  2 to 8.
/// out       the compressed bytes are appended.
///
/// The codes begin with a clear and end with the end code.
/// Source: Welch, "A technique for high-performance data compression" (1984), in the form of the GIF89a format.
void CompressLzw(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> free, std::uint8_t wildcard,
                 int minCodeSize, ClearRule rule, std::vector<std::uint8_t>& out);

}  // namespace glyphmotion
