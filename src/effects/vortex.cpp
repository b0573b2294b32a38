// SPDX-License-Identifier: MIT
// Vortex: the text twists up like water going down a drain and untwists again. Only the masks are twisted, never the
// materials: the letters swirl across a fill that stays in place.
#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "effects/twist.h"
#include "resources/panel_vortex.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kVortexPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kRotation = kPanel.Option("Rotate"), kSmooth = kPanel.Option("Smooth"),
              kDirection = kPanel.Option("Scroll");

struct Parameters {
  double phase = 0.5;  // 0 to 1; 0.5 is the full twist
  TwistTables tables;
  DoubledMasks doubled;
};

// What a frame depends on: the degrees at the centre.
int AngleOf(const Dialog& dialog, double phase) {
  const int rotation = ReadNumber(dialog, kRotation);
  return TwistAngle(ReadDirection(dialog, kDirection) == 1 ? -rotation : rotation, phase);
}

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  const int angle = AngleOf(*context.dialog, parameters.phase);
  const bool smooth = composer.Check(kSmooth);
  composer.onShadowMask = composer.onTextMask = composer.onOutlineMask = [&](PackedDib mask) {
    return TwistMask(mask, angle, smooth, parameters.tables, &parameters.doubled);
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Parameters parameters;
  return RunTest(context, &parameters, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const int frames = ReadNumber(dialog, kFrames);
    Parameters parameters;
    if (!BeginRun(context, &parameters, Render, frames)) return false;
    std::vector<PhaseFrame> plan = PlanToRest(context, frames);
    for (PhaseFrame& frame : plan) frame.shows = AngleOf(dialog, frame.phase);
    return AppendPhases<Parameters>(context, Render, plan, frames - 1,
                                    [](Parameters& lane, double phase) { lane.phase = phase; });
  });
}

}  // namespace

const EffectDescriptor kVortex = EffectOf<kVortexPanel>("The text twists like water going down a drain.", Test, Build,
                                                        0, {"", "--fill gradient:linear,#2a9d8f-#264653"});

}  // namespace glyphmotion
