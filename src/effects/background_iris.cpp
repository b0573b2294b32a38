// SPDX-License-Identifier: MIT
// Background Iris: up to five backgrounds open into one another through patterns, while the text stands in front.
#include "effects/effect_table.h"
#include "effects/iris_cycle.h"
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
constexpr IrisControls kControls{.materials = {609, 611, 613, 616, 619},
                                 .enables = {615, 618, 621},
                                 .styles = {642, 646, 650, 654, 658},
                                 .sizes = {644, 648, 652, 656, 660},
                                 .frames = 632};

PackedDib Render(EffectContext& context) {
  const IrisParams& params = ParametersOf<IrisParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles, params.scroll);
  // The backgrounds stand also where alpha runs of other effects have their key colour.
  composer.makeFrame = [&](int width, int height) { return RenderIris(composer, params, width, height); };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestIris(context, kControls, Render); }
int Build(EffectContext& context) noexcept { return BuildIris(context, kControls, Render); }

}  // namespace

const EffectDescriptor kBackgroundIris = {
    "Background Iris", &kBackgroundIrisPanel, Test, Build, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
