// SPDX-License-Identifier: MIT
// Every effect of the program, in the order of the effect list, and what follows from the list.
#pragma once

#include <span>
#include <string>

#include "effects/protocol.h"

namespace glyphmotion {

// The one list of effects. Settings and documents hold an effect's index, so a new row goes to the end and no row ever
// moves: Ripple stays before Radar.
#define GLYPHMOTION_EFFECTS(ROW) \
  ROW(kBackgroundHyperspace)     \
  ROW(kBackgroundIris)           \
  ROW(kBreaker)                  \
  ROW(kCubist)                   \
  ROW(kElastic)                  \
  ROW(kEventHorizon)             \
  ROW(kFuse)                     \
  ROW(kGumdrops)                 \
  ROW(kHyperspace)               \
  ROW(kIris)                     \
  ROW(kLaser)                    \
  ROW(kNebula)                   \
  ROW(kPhasersOnStun)            \
  ROW(kPinch)                    \
  ROW(kPulse)                    \
  ROW(kRipple)                   \
  ROW(kRadar)                    \
  ROW(kSimple)                   \
  ROW(kSingularity)              \
  ROW(kVortex)                   \
  ROW(kWhiteNoise)

#define GLYPHMOTION_DECLARE_EFFECT(row) extern const EffectDescriptor row;
GLYPHMOTION_EFFECTS(GLYPHMOTION_DECLARE_EFFECT)
#undef GLYPHMOTION_DECLARE_EFFECT

#define GLYPHMOTION_COUNT_EFFECT(row) +1
constexpr int kEffectCount = GLYPHMOTION_EFFECTS(GLYPHMOTION_COUNT_EFFECT);
#undef GLYPHMOTION_COUNT_EFFECT

/// All rows.
std::span<const EffectDescriptor* const> Effects() noexcept;

/// Row i; beyond the table, its first or last row.
const EffectDescriptor& EffectRow(int i) noexcept;

/// The row of a name, where case does not count and blanks may be hyphens ("background-hyperspace"); -1 for none.
int FindEffect(const std::string& name) noexcept;

/// The control tied to a persistent key, in dialog 1000 or any panel; null for none. `panel`, if given, gets its
/// template.
const ControlTemplate* FindControlOfKey(const char* key, const DialogTemplate** panel = nullptr) noexcept;
/// The control of an id, likewise.
const ControlTemplate* FindControlOfId(int id, const DialogTemplate** panel = nullptr) noexcept;

}  // namespace glyphmotion
