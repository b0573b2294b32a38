// SPDX-License-Identifier: MIT
// Pulse: the text swells from the centre like a beating heart, bulging towards the viewer, and sinks back. Materials
// and letters bulge together.
#include <cstdint>
#include <utility>

#include "effects/bulge.h"
#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "resources/panel_pulse.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kPulsePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kIntensity = kPanel.Option("Intensity");

struct Parameters {
  double phase = 0;  // 0 to minus the intensity as a fraction
  BulgeTables tables;
};

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  const int percent = static_cast<int>(parameters.phase * 100);
  composer.onFillBitmap = composer.onShadowBitmap = composer.onShadowMask = composer.onTextMask =
      composer.onOutlineMask = [&, percent](PackedDib bitmap) {
        return percent == 0 ? std::move(bitmap) : BulgeBitmap(bitmap, percent, parameters.tables);
      };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Parameters parameters;
  parameters.phase = -(ReadNumber(*context.dialog, kIntensity) / 100.0);
  return RunTest(context, &parameters, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames), half = frames / 2;
    const double intensity = ReadNumber(dialog, kIntensity) / 100.0;
    Parameters parameters;
    if (!BeginRun(context, &parameters, Render, std::int64_t{2} * half + 1)) return false;
    std::vector<PhaseFrame> plan;
    const auto add = [&](int step, int shown, std::optional<int> progress) {
      const double phase = -((static_cast<double>(step) / half) * intensity);
      plan.push_back({phase, shown, progress, static_cast<int>(phase * 100)});
    };
    int count = 0;
    for (int i = 0; i < half; ++i) add(i, delay, count++);
    for (int j = half - 1; j >= 0; --j) add(j, delay, count++);
    add(0, delay + pause, {});
    return AppendPhases<Parameters>(context, Render, plan, frames,
                                    [](Parameters& lane, double phase) { lane.phase = phase; });
  });
}

}  // namespace

const EffectDescriptor kPulse = EffectOf<kPulsePanel>("The text swells like a beating heart.", Test, Build, 0,
                                                      {"", "--fill #c8203c --outline #50101c"});

}  // namespace glyphmotion
