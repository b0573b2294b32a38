// SPDX-License-Identifier: MIT
// Ripple: a single bump passes along the text from left to right, lifts the columns that it crosses, and leaves the
// text lying flat. The frame is higher than the text by the height of the bump.
#include "effects/effect_table.h"
#include "effects/passing_bump.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 135, .background = 137, .outline = 139, .outlineEnable = 145};
constexpr int kFrames = 141, kRange = 143, kRippleSize = 146;

// How far down a column comes to stand: a flat one by the whole range, the peak of the bump not at all.
int DropOf(float height, int range) { return range - static_cast<int>(static_cast<float>(range) * height); }

constexpr BumpStyle kStyle{kRoles, kFrames, kRippleSize, kRange, true, DropOf, LowerColumns};

PackedDib Render(EffectContext& context) { return RenderBump(context, kStyle); }

int Test(EffectContext& context) noexcept { return TestBump(context, Render); }

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int half = ReadNumber(*context.dialog, kFrames) / 2;
    return BuildBump(context, Render, half, half - 1, -1);
  });
}

}  // namespace

const EffectDescriptor kRipple = {"Ripple", &kRipplePanel, Test, Build, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
