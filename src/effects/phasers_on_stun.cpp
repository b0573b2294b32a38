// SPDX-License-Identifier: MIT
// Phasers on Stun: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 818,
                            .shadow = 834,
                            .background = 836,
                            .outline = 838,
                            .fillOpacity = 840,
                            .shadowOpacity = 842,
                            .softness = 846,
                            .shadowOffset = 848,
                            .shadowDirection = 850,
                            .shadowEnable = 852,
                            .outlineEnable = 853};

}  // namespace

const EffectDescriptor kPhasersOnStun = {
    "Phasers on Stun", &kPhasersOnStunPanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
