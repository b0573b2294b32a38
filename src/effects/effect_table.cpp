// SPDX-License-Identifier: MIT
#include "effects/effect_table.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "resources/templates.h"

namespace glyphmotion {
namespace {

// In the order of the effect list, which is that of the persistent index: Ripple stands before Radar and must stay
// there.
const EffectDescriptor* const kEffects[kEffectCount] = {&kBackgroundHyperspace,
                                                        &kBackgroundIris,
                                                        &kBreaker,
                                                        &kCubist,
                                                        &kElastic,
                                                        &kEventHorizon,
                                                        &kFuse,
                                                        &kGumdrops,
                                                        &kHyperspace,
                                                        &kIris,
                                                        &kLaser,
                                                        &kNebula,
                                                        &kPhasersOnStun,
                                                        &kPinch,
                                                        &kPulse,
                                                        &kRipple,
                                                        &kRadar,
                                                        &kSimple,
                                                        &kSingularity,
                                                        &kVortex,
                                                        &kWhiteNoise};

char Plain(char c) {
  return c == '-' || c == '_' ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

const EffectDescriptor& EffectRow(int i) noexcept { return *kEffects[std::clamp(i, 0, kEffectCount - 1)]; }

int FindEffect(const std::string& name) noexcept {
  for (int i = 0; i < kEffectCount; ++i) {
    const std::string_view other = EffectRow(i).name;
    if (std::equal(name.begin(), name.end(), other.begin(), other.end(),
                   [](char a, char b) { return Plain(a) == Plain(b); })) {
      return i;
    }
  }
  return -1;
}

}  // namespace glyphmotion
