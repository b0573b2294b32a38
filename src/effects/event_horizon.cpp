// SPDX-License-Identifier: MIT
// Event Horizon: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 749,
                            .shadow = 751,
                            .background = 753,
                            .outline = 755,
                            .fillOpacity = 757,
                            .shadowOpacity = 759,
                            .softness = 763,
                            .shadowOffset = 765,
                            .shadowDirection = 767,
                            .shadowEnable = 769,
                            .outlineEnable = 770};

}  // namespace

const EffectDescriptor kEventHorizon = {
    "Event Horizon", &kEventHorizonPanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
