// SPDX-License-Identifier: MIT
// Radar: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 538,
                            .shadow = 540,
                            .background = 542,
                            .outline = 544,
                            .fillOpacity = 546,
                            .shadowOpacity = 548,
                            .softness = 550,
                            .shadowOffset = 552,
                            .shadowDirection = 556,
                            .shadowEnable = 558,
                            .outlineEnable = 559};

}  // namespace

const EffectDescriptor kRadar = {"Radar", &kRadarPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                 &kRoles};

}  // namespace glyphmotion
