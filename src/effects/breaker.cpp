// SPDX-License-Identifier: MIT
// Breaker: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 672,
                            .shadow = 674,
                            .background = 676,
                            .outline = 678,
                            .fillOpacity = 680,
                            .shadowOpacity = 682,
                            .softness = 686,
                            .shadowOffset = 688,
                            .shadowDirection = 692,
                            .shadowEnable = 694,
                            .outlineEnable = 695};

}  // namespace

const EffectDescriptor kBreaker = {"Breaker", &kBreakerPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                   &kRoles};

}  // namespace glyphmotion
