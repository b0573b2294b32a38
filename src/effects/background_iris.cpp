// SPDX-License-Identifier: MIT
// Background Iris: up to five backgrounds open into one another through patterns, while the text rests in front.
#include "effects/effect_table.h"
#include "effects/iris_cycle.h"
#include "resources/panel_background_iris.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kBackgroundIrisPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr IrisControls kControls = IrisControlsOf(kPanel, kRoles.background, "BackgroundEnable");

PackedDib Render(EffectContext& context) {
  const IrisParams& params = ParametersOf<IrisParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  // The backgrounds also fill the area that has the key colour in alpha runs of other effects.
  composer.makeFrame = [&](int width, int height) { return RenderIris(composer, params, width, height); };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept { return TestIris(context, kControls, Render); }
int Build(EffectContext& context) noexcept { return BuildIris(context, kControls, Render); }

}  // namespace

const EffectDescriptor kBackgroundIris = EffectOf<kBackgroundIrisPanel>(
    "Backgrounds open into one another behind the text.", Test, Build, 0, {"Grand opening"});

}  // namespace glyphmotion
