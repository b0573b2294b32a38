// SPDX-License-Identifier: MIT
// Elastic: the material inside the letters stretches and ripples outward in rings from the middle, more and more
// strongly, then settles back. The letters keep their shape; a plain colour shows nothing of it.
#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "effects/ripple_fill.h"
#include "resources/panel_elastic.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kElasticPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kEnergy = kPanel.Option("Energy");

PackedDib Render(EffectContext& context) {
  ElasticParams& params = ParametersOf<ElasticParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  // The rings widen from 4 pixels to 50 as their height grows from 0.7 to 60.
  params.wavelength = 400 + static_cast<int>(4600 * params.phase);
  params.amplitude = 70 + static_cast<int>(5930 * params.phase);
  if (params.phase > 0) composer.onFillBitmap = [&](PackedDib fill) { return RippleFill(fill, params); };
  return composer.Compose();
}

ElasticParams ParamsAtRest(const Dialog& dialog) {
  ElasticParams params;
  params.energy = ReadNumber(dialog, kEnergy);
  return params;
}

int Test(EffectContext& context) noexcept {
  ElasticParams params = ParamsAtRest(*context.dialog);
  return RunTest(context, &params, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames), half = frames / 2, total = frames | 1;
    ElasticParams params = ParamsAtRest(dialog);
    params.phase = 0.5;
    if (!BeginRun(context, &params, Render, 2 * std::int64_t{half} + 2)) return false;
    std::vector<PhaseFrame> plan;
    for (int i = 0; i < half; ++i) plan.push_back({static_cast<double>(i) / half, delay, i, {}});
    plan.push_back({1, delay, half, {}});
    // The peak is held for a second frame, which reports the same step as the first.
    for (int j = 0; j < half; ++j) plan.push_back({1.0 - static_cast<double>(j) / half, delay, half + j, {}});
    plan.push_back({0, delay + pause, {}, {}});
    return AppendPhases<ElasticParams>(context, Render, plan, total,
                                       [energy = params.energy](ElasticParams& lane, double phase) {
                                         lane.energy = energy;
                                         lane.phase = phase;
                                       });
  });
}

}  // namespace

const EffectDescriptor kElastic =
    EffectOf<kElasticPanel>("The material ripples as if it had been plucked.", Test, Build, 0,
                            {"", "--fill texture:Marble --set Style012Energy=60"});

}  // namespace glyphmotion
