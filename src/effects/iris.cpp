// SPDX-License-Identifier: MIT
// Iris: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 158,
                            .shadow = 171,
                            .background = 173,
                            .outline = 175,
                            .fillOpacity = 177,
                            .shadowOpacity = 179,
                            .softness = 183,
                            .shadowOffset = 185,
                            .shadowDirection = 187,
                            .shadowEnable = 189,
                            .outlineEnable = 190};

}  // namespace

const EffectDescriptor kIris = {"Iris", &kIrisPanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
