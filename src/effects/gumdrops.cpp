// SPDX-License-Identifier: MIT
// Gumdrops: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 405,
                            .shadow = 381,
                            .background = 383,
                            .outline = 385,
                            .fillOpacity = 387,
                            .shadowOpacity = 389,
                            .softness = 393,
                            .shadowOffset = 395,
                            .shadowDirection = 397,
                            .shadowEnable = 399,
                            .outlineEnable = 400};

}  // namespace

const EffectDescriptor kGumdrops = {"Gumdrops", &kGumdropsPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                    &kRoles};

}  // namespace glyphmotion
