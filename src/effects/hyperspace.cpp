// SPDX-License-Identifier: MIT
// Hyperspace: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 327,
                            .shadow = 329,
                            .background = 331,
                            .outline = 333,
                            .fillOpacity = 335,
                            .shadowOpacity = 337,
                            .softness = 341,
                            .shadowOffset = 343,
                            .shadowDirection = 347,
                            .shadowEnable = 349,
                            .outlineEnable = 350};

}  // namespace

const EffectDescriptor kHyperspace = {
    "Hyperspace", &kHyperspacePanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
