// SPDX-License-Identifier: MIT
// Singularity: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 924,
                            .shadow = 926,
                            .background = 928,
                            .outline = 930,
                            .fillOpacity = 932,
                            .shadowOpacity = 934,
                            .softness = 938,
                            .shadowOffset = 940,
                            .shadowDirection = 944,
                            .shadowEnable = 946,
                            .outlineEnable = 947};

}  // namespace

const EffectDescriptor kSingularity = {
    "Singularity", &kSingularityPanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
