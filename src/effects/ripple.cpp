// SPDX-License-Identifier: MIT
// Ripple: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 135, .background = 137, .outline = 139, .outlineEnable = 145};

}  // namespace

const EffectDescriptor kRipple = {"Ripple", &kRipplePanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                  &kRoles};

}  // namespace glyphmotion
