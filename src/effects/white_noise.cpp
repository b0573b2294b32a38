// SPDX-License-Identifier: MIT
// White Noise: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 497,
                            .shadow = 499,
                            .background = 501,
                            .outline = 503,
                            .fillOpacity = 505,
                            .shadowOpacity = 507,
                            .softness = 511,
                            .shadowOffset = 513,
                            .shadowDirection = 515,
                            .shadowEnable = 517,
                            .outlineEnable = 518};

}  // namespace

const EffectDescriptor kWhiteNoise = {
    "White Noise", &kWhiteNoisePanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
