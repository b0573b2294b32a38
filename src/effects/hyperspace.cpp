// SPDX-License-Identifier: MIT
// Hyperspace: the text stands still, and stars rush sideways through the inside of its letters.
#include "effects/effect_table.h"
#include "effects/starfield.h"
#include "resources/panel_hyperspace.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kHyperspacePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr StarfieldControls kStars = StarsOf(kPanel);

PackedDib Render(EffectContext& context) {
  StarfieldState& field = ParametersOf<StarfieldState>(context);
  const Dialog& dialog = *context.dialog;
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.onSize = [&](int width, int height) {
    CreateStars(field, dialog, kStars, width, height);
    return true;
  };
  composer.onFillBitmap = [&](PackedDib fill) {
    const DibView picture(fill);
    if (!picture) return PackedDib();
    PaintStars(field, picture, ReadColour(dialog, kStars.colour));
    return fill;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestStarfield(context, Render); }
int Build(EffectContext& context) noexcept { return BuildStarfield(context, kStars, Render); }

}  // namespace

const EffectDescriptor kHyperspace =
    EffectOf<kHyperspacePanel>("Stars streak through the inside of the letters.", Test, Build, kLoops);

}  // namespace glyphmotion
