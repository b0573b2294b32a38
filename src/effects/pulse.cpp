// SPDX-License-Identifier: MIT
// Pulse: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 784,
                            .shadow = 786,
                            .background = 788,
                            .outline = 790,
                            .fillOpacity = 792,
                            .shadowOpacity = 794,
                            .softness = 798,
                            .shadowOffset = 800,
                            .shadowDirection = 804,
                            .shadowEnable = 806,
                            .outlineEnable = 807};

}  // namespace

const EffectDescriptor kPulse = {"Pulse", &kPulsePanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                 &kRoles};

}  // namespace glyphmotion
