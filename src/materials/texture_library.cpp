// SPDX-License-Identifier: MIT
#include "materials/texture_library.h"

#include <cstring>

#include "materials/fractal_texture.h"
#include "materials/surface_texture.h"

namespace glyphmotion {

void DefaultTextureSpec(TextureSpec& spec) noexcept {
  static constexpr float legacy[] = {12.0f, 60.0f, 2.0f, 3.1f, 100.0f, 650.0f};
  static constexpr Colour fore[] = {0xFFFFFF, 0xFFE0E0, 0xFFA0A0, 0xFF8080, 0xFF6060};
  static constexpr float curve[] = {0.0f, 0.33f, 0.67f, 1.0f};
  std::memset(&spec, 0, sizeof(spec));
  spec.CloudMode = 1;
  std::memcpy(spec.LegacyParams, legacy, sizeof(legacy));
  spec.MatrixSize = 64;
  std::memcpy(spec.ForeColour, fore, sizeof(fore));
  spec.BackColour = 0xFF0000;
  for (std::uint32_t i = 0; i < 5; ++i) {
    spec.Power[i] = 0.75f;
    spec.SeedValue[i] = 10000 + i;
    spec.Dimension[i] = 2.15f;
  }
  spec.CreaterCount = 5000;
  spec.CreaterDepth = 1.5f;
  std::memcpy(spec.ColorRed, curve, sizeof(curve));
  std::memcpy(spec.ColorGreen, curve, sizeof(curve));
  std::memcpy(spec.ColorBlue, curve, sizeof(curve));
  spec.BubbleCount = 64;
  spec.BubbleSize = 4;
  spec.BubblePower = 0.25f;
  spec.PerturbationPower = 1.0f;
}

PackedDib GenerateTexture(const TextureSpec& spec) noexcept {
  switch (spec.TextureType) {
    case 0:
    case 1:
    case 2:
    case 3:
      return GenerateFractalTexture(spec);
    case 4:
      return GenerateCraterTexture(spec);
    case 5:
      return GeneratePerturbationTexture(spec);
    default:
      return {};
  }
}

}  // namespace glyphmotion
