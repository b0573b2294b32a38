// SPDX-License-Identifier: MIT
// Background Iris: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 624,
                            .shadow = 622,
                            .background = 609,
                            .outline = 626,
                            .fillOpacity = 628,
                            .shadowOpacity = 630,
                            .softness = 634,
                            .shadowOffset = 636,
                            .shadowDirection = 638,
                            .shadowEnable = 640,
                            .outlineEnable = 641};

}  // namespace

const EffectDescriptor kBackgroundIris = {
    "Background Iris", &kBackgroundIrisPanel, nullptr, nullptr, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
