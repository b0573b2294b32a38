// SPDX-License-Identifier: MIT
// Pinch: a pinch passes along the text from left to right and squeezes the columns that it crosses towards the middle
// of the frame.
#include "effects/effect_table.h"
#include "effects/passing_bump.h"
#include "resources/panel_pinch.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kPinchPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kPinchWidth = kPanel.Option("Wavesize"),
              kPinchDepth = kPanel.Option("Waveheight");

// The percent of a column's height that stay.
int ShareOf(float height, int depth) {
  if (height <= 0.0f) return 100;
  const float pinched = height * static_cast<float>(depth / 100.0);
  return 100 - static_cast<int>(static_cast<double>(pinched) * 100.0);
}

constexpr BumpStyle kStyle{kRoles, kFrames, kPinchWidth, kPinchDepth, false, ShareOf, SqueezeColumns};

PackedDib Render(EffectContext& context) { return RenderBump(context, kStyle); }

int Test(EffectContext& context) noexcept { return TestBump(context, Render); }

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int half = ReadNumber(*context.dialog, kFrames) / 2;
    // The last position is beyond the right end: the text rests unpinched.
    return BuildBump(context, Render, half, half, half);
  });
}

}  // namespace

const EffectDescriptor kPinch = EffectOf<kPinchPanel>("A pinch passes along the text.", Test, Build);

}  // namespace glyphmotion
