// SPDX-License-Identifier: MIT
// Cubist: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 870,
                            .shadow = 886,
                            .background = 888,
                            .outline = 890,
                            .fillOpacity = 892,
                            .shadowOpacity = 894,
                            .softness = 898,
                            .shadowOffset = 900,
                            .shadowDirection = 902,
                            .shadowEnable = 904,
                            .outlineEnable = 905};

}  // namespace

const EffectDescriptor kCubist = {"Cubist", &kCubistPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                  &kRoles};

}  // namespace glyphmotion
