// SPDX-License-Identifier: MIT
// Ripple: a single bump passes along the text from left to right, lifts the columns that it crosses, and leaves the
// text lying flat. The frame is higher than the text by the height of the bump.
#include "effects/effect_table.h"
#include "effects/passing_bump.h"
#include "resources/panel_ripple.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kRipplePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kRange = kPanel.Option("Range"),
              kRippleSize = kPanel.Option("Wavesize");

// How far a column is lowered: a flat one by the whole range, the peak of the bump not at all.
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

const EffectDescriptor kRipple = EffectOf<kRipplePanel>("A bump passes along the text.", Test, Build);

}  // namespace glyphmotion
