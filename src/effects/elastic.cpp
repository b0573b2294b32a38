// SPDX-License-Identifier: MIT
// Elastic: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 575,
                            .shadow = 577,
                            .background = 579,
                            .outline = 581,
                            .fillOpacity = 583,
                            .shadowOpacity = 585,
                            .softness = 589,
                            .shadowOffset = 591,
                            .shadowDirection = 593,
                            .shadowEnable = 595,
                            .outlineEnable = 596};

}  // namespace

const EffectDescriptor kElastic = {"Elastic", &kElasticPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                   &kRoles};

}  // namespace glyphmotion
