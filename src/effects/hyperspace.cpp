// SPDX-License-Identifier: MIT
// Hyperspace: the text stands still, and stars rush sideways through the inside of its letters.
#include "effects/effect_table.h"
#include "effects/starfield.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 327,
                            .shadow = 329,
                            .background = 331,
                            .outline = 333,
                            .fillOpacity = 335,
                            .shadowOpacity = 337,
                            .softness = 341,
                            .shadowOffset = 343,
                            .shadowDirection = 347,
                            .shadowEnable = 349,
                            .outlineEnable = 350};

constexpr StarfieldControls kStars{.frames = 339, .seed = 351, .density = 353, .scroll = 345, .colour = 355};

PackedDib Render(EffectContext& context) {
  StarfieldRun& run = ParametersOf<StarfieldRun>(context);
  const Dialog& dialog = *context.dialog;
  FrameComposer composer = MakeComposer(context, kRoles, run.offset);
  composer.onSize = [&](int width, int height) {
    CreateStars(run.field, dialog, kStars, width, height);
    return true;
  };
  composer.onFillBitmap = [&](PackedDib fill) {
    const DibView picture(fill);
    if (!picture) return PackedDib();
    PaintAndMoveStars(run.field, picture, ReadColour(dialog, kStars.colour));
    return fill;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestStarfield(context, Render); }
int Build(EffectContext& context) noexcept { return BuildStarfield(context, kStars, Render); }

}  // namespace

const EffectDescriptor kHyperspace = {
    "Hyperspace", &kHyperspacePanel, Test, Build, TransparentColour<kRoles.background>, &kRoles, kLoops};

}  // namespace glyphmotion
