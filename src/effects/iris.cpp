// SPDX-License-Identifier: MIT
// Iris: the text stands still while its fill changes from one material to the next through a pattern of squares,
// diamonds, circles, blinds or chevrons.
#include "effects/effect_table.h"
#include "effects/iris_cycle.h"
#include "resources/panel_iris.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kIrisPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr IrisControls kControls = IrisControlsOf(kPanel, kRoles.fill, "FillEnable");

PackedDib Render(EffectContext& context) {
  const IrisParams& params = ParametersOf<IrisParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
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

const EffectDescriptor kIris = EffectOf<kIrisPanel>("Fills open into one another inside the letters.", Test, Build);

}  // namespace glyphmotion
