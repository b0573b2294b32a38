// SPDX-License-Identifier: MIT
// Breaker: a whirl the height of the text rolls along it like a breaking wave, twisting only the letters under it, and
// unwinds as it goes. The twist of Vortex in a square window that slides across the picture.
#include <utility>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "effects/twist.h"
#include "image/filters.h"
#include "resources/panel_breaker.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kBreakerPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kRotation = kPanel.Option("Rotate"), kSmooth = kPanel.Option("Smooth"),
              kDirection = kPanel.Option("Scroll");

struct Parameters {
  double phase = 0.5;  // 0 to 1: the window travels once across while the angle rises and falls
  TwistTables tables;
  DoubledMasks doubled;
};

// The twisted square, pasted where it was cut out; its corners are unchanged, so there is no seam.
PackedDib TwistWindow(const PackedDib& working, int angle, double phase, bool leftToRight, TwistTables& tables) {
  PackedDib result = DuplicateDib(working);
  const DibView to(result);
  if (!to) return {};
  const int width = to.Width(), side = to.Height();
  const int travelled = static_cast<int>((width - side) * phase);
  // From the right, the window ends a pixel short.
  const int left = leftToRight ? travelled : width - travelled - side - 1;
  const PackedDib square = Twist(CropDib(working, {left, 0, left + side, side}), angle, tables);
  const DibView from(square);
  if (!from) return {};
  CopyRegion(to, left, 0, from, 0, 0, side, side);
  return result;
}

PackedDib BreakMask(const PackedDib& mask, int angle, bool smooth, bool leftToRight, Parameters& parameters) {
  const PackedDib* working = smooth ? parameters.doubled.Double(mask) : &mask;
  if (!working) return {};
  PackedDib broken = TwistWindow(*working, angle, parameters.phase, leftToRight, parameters.tables);
  return smooth && broken ? ResampleByPercent(broken, 50, 50) : std::move(broken);
}

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  const bool leftToRight = ReadDirection(*context.dialog, kDirection) == 1;
  const int rotation = composer.Number(kRotation);
  const int angle = TwistAngle(leftToRight ? -rotation : rotation, parameters.phase);
  const bool smooth = composer.Check(kSmooth);
  composer.onShadowMask = composer.onTextMask =
      composer.onOutlineMask = [&](PackedDib mask) { return BreakMask(mask, angle, smooth, leftToRight, parameters); };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Parameters parameters;
  return RunTest(context, &parameters, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int frames = ReadNumber(*context.dialog, kFrames);
    Parameters parameters;
    if (!BeginRun(context, &parameters, Render, frames)) return false;
    return AppendPhases<Parameters>(context, Render, PlanToRest(context, frames), frames - 1,
                                    [](Parameters& lane, double phase) { lane.phase = phase; });
  });
}

}  // namespace

const EffectDescriptor kBreaker =
    EffectOf<kBreakerPanel>("A whirl rolls along the letters like a breaking wave.", Test, Build, 0,
                            {"Surf's up", "--fill texture:Water --outline #10405c"});

}  // namespace glyphmotion
