// SPDX-License-Identifier: MIT
// Pixels are taken in pieces whose weights and colours are laid out byte for byte as the pixels are, so that the blend
// itself is one loop over bytes.
#include "effects/colour_blend.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

constexpr int kPiece = 64;  // pixels

GLYPHMOTION_CLONES
void BlendBytes(std::uint8_t* under, const std::uint8_t* over, const std::uint8_t* weights, int count) {
  for (int i = 0; i < count; ++i) {
    const auto below = static_cast<std::uint16_t>(under[i] * (255 - weights[i]));
    const auto above = static_cast<std::uint16_t>(over[i] * weights[i]);
    // Div255 in 16 bits: 255 * 255 + 1 + 254 still fits.
    const auto belowPart = static_cast<std::uint16_t>(static_cast<std::uint16_t>(below + 1 + (below >> 8)) >> 8);
    const auto abovePart = static_cast<std::uint16_t>(static_cast<std::uint16_t>(above + 1 + (above >> 8)) >> 8);
    under[i] = static_cast<std::uint8_t>(belowPart + abovePart);
  }
}

struct Pattern {
  std::uint8_t bytes[3 * kPiece];
  Pattern(Colour colour, int count) {
    for (int i = 0; i < 3 * std::min(count, kPiece); i += 3) {
      bytes[i] = static_cast<std::uint8_t>(BlueOf(colour));
      bytes[i + 1] = static_cast<std::uint8_t>(GreenOf(colour));
      bytes[i + 2] = static_cast<std::uint8_t>(RedOf(colour));
    }
  }
};

}  // namespace

void BlendColour(std::uint8_t* under, int count, Colour colour, int a) noexcept {
  if (count <= 0 || a == 0) return;
  const Pattern pattern(colour, count);
  std::uint8_t weights[3 * kPiece];
  if (a != 255) std::memset(weights, a, static_cast<std::size_t>(3 * std::min(count, kPiece)));
  for (; count > 0; count -= kPiece, under += 3 * kPiece) {
    const int bytes = 3 * std::min(count, kPiece);
    if (a == 255) {
      std::memcpy(under, pattern.bytes, static_cast<std::size_t>(bytes));
    } else {
      BlendBytes(under, pattern.bytes, weights, bytes);
    }
  }
}

void BlendColourMasked(std::uint8_t* under, const std::uint8_t* mask, int count, Colour colour) noexcept {
  if (count <= 0) return;
  const Pattern pattern(colour, count);
  for (; count > 0; count -= kPiece, under += 3 * kPiece, mask += kPiece) {
    const int pixels = std::min(count, kPiece);
    std::uint8_t weights[3 * kPiece];
    for (int i = 0; i < pixels; ++i) weights[3 * i] = weights[3 * i + 1] = weights[3 * i + 2] = mask[i];
    BlendBytes(under, pattern.bytes, weights, 3 * pixels);
  }
}

}  // namespace glyphmotion
