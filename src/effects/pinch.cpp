// SPDX-License-Identifier: MIT
// Pinch: not built in yet; the row has a panel and a background colour, but no frames.
#include "effects/effect_table.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 221, .background = 223, .outline = 225, .outlineEnable = 229};

}  // namespace

const EffectDescriptor kPinch = {"Pinch", &kPinchPanel, nullptr, nullptr, TransparentColour<kRoles.background>,
                                 &kRoles};

}  // namespace glyphmotion
