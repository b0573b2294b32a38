// SPDX-License-Identifier: MIT
// Laser: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 282,
                            .shadow = 284,
                            .background = 286,
                            .outline = 288,
                            .fillOpacity = 290,
                            .shadowOpacity = 292,
                            .softness = 296,
                            .shadowOffset = 298,
                            .shadowDirection = 302,
                            .shadowEnable = 304,
                            .outlineEnable = 305};

}  // namespace

const EffectDescriptor kLaser = {"Laser", &kLaserPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                 &kRoles};

}  // namespace glyphmotion
