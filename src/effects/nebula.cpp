// SPDX-License-Identifier: MIT
// Nebula: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 244,
                            .shadow = 246,
                            .background = 248,
                            .outline = 250,
                            .fillOpacity = 252,
                            .shadowOpacity = 254,
                            .softness = 258,
                            .shadowOffset = 260,
                            .shadowDirection = 262,
                            .shadowEnable = 264,
                            .outlineEnable = 265};

}  // namespace

const EffectDescriptor kNebula = {"Nebula", &kNebulaPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                  &kRoles};

}  // namespace glyphmotion
