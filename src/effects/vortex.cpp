// SPDX-License-Identifier: MIT
// Vortex: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 422,
                            .shadow = 424,
                            .background = 426,
                            .outline = 428,
                            .fillOpacity = 430,
                            .shadowOpacity = 432,
                            .softness = 436,
                            .shadowOffset = 438,
                            .shadowDirection = 442,
                            .shadowEnable = 444,
                            .outlineEnable = 445};

}  // namespace

const EffectDescriptor kVortex = {"Vortex", &kVortexPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                  &kRoles};

}  // namespace glyphmotion
