// SPDX-License-Identifier: MIT
// Iris: the text stands still while its fill changes from one material to the next through a pattern of squares,
// diamonds, circles, blinds or chevrons.
#include "effects/effect_table.h"
#include "effects/iris_cycle.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 158,
                            .shadow = 171,
                            .background = 173,
                            .outline = 175,
                            .fillOpacity = 177,
                            .shadowOpacity = 179,
                            .softness = 183,
                            .shadowOffset = 185,
                            .shadowDirection = 187,
                            .shadowEnable = 189,
                            .outlineEnable = 190};
constexpr IrisControls kControls{.materials = {158, 160, 162, 165, 168},
                                 .enables = {164, 167, 170},
                                 .styles = {191, 195, 199, 203, 207},
                                 .sizes = {193, 197, 201, 205, 209},
                                 .frames = 181};

PackedDib Render(EffectContext& context) {
  const IrisParams& params = ParametersOf<IrisParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles, params.scroll);
  // The fills are rendered before the background is, which matters to materials that draw random numbers.
  PackedDib mixed;
  composer.onSize = [&](int width, int height) {
    mixed = RenderIris(composer, params, width, height);
    return static_cast<bool>(mixed);
  };
  composer.makeFillBitmap = [&](int, int) { return std::move(mixed); };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestIris(context, kControls, Render); }
int Build(EffectContext& context) noexcept { return BuildIris(context, kControls, Render); }

}  // namespace

const EffectDescriptor kIris = {"Iris", &kIrisPanel, Test, Build, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
