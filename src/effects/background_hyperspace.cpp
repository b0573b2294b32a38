// SPDX-License-Identifier: MIT
// Background Hyperspace: the stars rush past behind the text. In alpha runs they are in the colours only.
#include "effects/effect_table.h"
#include "effects/starfield.h"
#include "resources/panel_background_hyperspace.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kBackgroundHyperspacePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr StarfieldControls kStars = StarsOf(kPanel);

PackedDib Render(EffectContext& context) {
  StarfieldState& field = ParametersOf<StarfieldState>(context);
  const Dialog& dialog = *context.dialog;
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.options.solidKey = false;  // stars need a picture to be painted on, also in alpha runs
  composer.onSize = [&](int, int) {
    CreateStars(field, dialog, kStars, composer.FrameWidth(), composer.FrameHeight());
    return true;
  };
  composer.onFrame = [&](PackedDib frame) {
    const DibView picture(frame);
    if (!picture) return PackedDib();
    PaintStars(field, picture, ReadColour(dialog, kStars.colour));
    return frame;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestStarfield(context, Render); }
int Build(EffectContext& context) noexcept { return BuildStarfield(context, kStars, Render); }

}  // namespace

const EffectDescriptor kBackgroundHyperspace =
    EffectOf<kBackgroundHyperspacePanel>("Stars rush past behind the text.", Test, Build, kLoops, {"Warp speed"});

}  // namespace glyphmotion
