// SPDX-License-Identifier: MIT
// Fuse: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 459,
                            .shadow = 461,
                            .background = 463,
                            .outline = 465,
                            .fillOpacity = 467,
                            .shadowOpacity = 469,
                            .softness = 473,
                            .shadowOffset = 475,
                            .shadowDirection = 479,
                            .shadowEnable = 481,
                            .outlineEnable = 482};

}  // namespace

const EffectDescriptor kFuse = {"Fuse", &kFusePanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
