// SPDX-License-Identifier: MIT
// Every effect of the program, one row each, in the order of the effect list. The index is persistent.
#pragma once

#include <string>

#include "effects/protocol.h"

namespace glyphmotion {

constexpr int kEffectCount = 21;

/// Row i; beyond the table, its first or last row.
const EffectDescriptor& EffectRow(int i) noexcept;

/// The row of a name, where case does not count and blanks may be hyphens ("background-hyperspace"); -1 for none.
int FindEffect(const std::string& name) noexcept;

extern const EffectDescriptor kBackgroundHyperspace, kBackgroundIris, kBreaker, kCubist, kElastic, kEventHorizon, kFuse,
    kGumdrops, kHyperspace, kIris, kLaser, kNebula, kPhasersOnStun, kPinch, kPulse, kRipple, kRadar, kSingularity,
    kVortex, kWhiteNoise, kSimple;

}  // namespace glyphmotion
