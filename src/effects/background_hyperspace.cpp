// SPDX-License-Identifier: MIT
// Background Hyperspace: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 709,
                            .shadow = 711,
                            .background = 713,
                            .outline = 715,
                            .fillOpacity = 717,
                            .shadowOpacity = 719,
                            .softness = 723,
                            .shadowOffset = 725,
                            .shadowDirection = 729,
                            .shadowEnable = 731,
                            .outlineEnable = 732};

}  // namespace

const EffectDescriptor kBackgroundHyperspace = {"Background Hyperspace",
                                                &kBackgroundHyperspacePanel,
                                                nullptr,
                                                nullptr,
                                                TransparentColour<kRoles.background>,
                                                &kRoles};

}  // namespace glyphmotion
