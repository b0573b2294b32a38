// SPDX-License-Identifier: MIT
// Background Hyperspace: the stars rush past behind the text. In alpha runs they are in the colours only.
#include "effects/effect_table.h"
#include "effects/starfield.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 709,
                            .shadow = 711,
                            .background = 713,
                            .outline = 715,
                            .fillOpacity = 717,
                            .shadowOpacity = 719,
                            .softness = 723,
                            .shadowOffset = 725,
                            .shadowDirection = 729,
                            .shadowEnable = 731,
                            .outlineEnable = 732};

constexpr StarfieldControls kStars{.frames = 721, .seed = 733, .density = 735, .scroll = 727, .colour = 737};

PackedDib Render(EffectContext& context) {
  StarfieldRun& run = ParametersOf<StarfieldRun>(context);
  const Dialog& dialog = *context.dialog;
  FrameComposer composer = MakeComposer(context, kRoles, run.offset);
  composer.options.solidKey = false;  // stars need a picture to be painted on, also in alpha runs
  composer.onSize = [&](int width, int height) {
    CreateStars(run.field, dialog, kStars, width, height);
    return true;
  };
  composer.onFrame = [&](PackedDib frame) {
    const DibView picture(frame);
    if (!picture) return PackedDib();
    PaintAndMoveStars(run.field, picture, ReadColour(dialog, kStars.colour));
    return frame;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestStarfield(context, Render); }
int Build(EffectContext& context) noexcept { return BuildStarfield(context, kStars, Render); }

}  // namespace

const EffectDescriptor kBackgroundHyperspace = {"Background Hyperspace",
                                                &kBackgroundHyperspacePanel,
                                                Test,
                                                Build,
                                                TransparentColour<kRoles.background>,
                                                &kRoles,
                                                kLoops};

}  // namespace glyphmotion
