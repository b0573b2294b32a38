// SPDX-License-Identifier: MIT
// Singularity: a whirlpool opens at one end of the text, grows along it and swallows more and more of the letters, then
// recedes. The twist of Vortex in a strip that widens; materials turn with the masks.
#include <cstdint>
#include <utility>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "effects/twist.h"
#include "resources/panel_singularity.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kSingularityPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kAngle = kPanel.Option("Angle"), kDirection = kPanel.Option("Scroll"),
              kSmooth = kPanel.Option("Smooth");

constexpr int kLeastStrip = 4;  // columns; a narrower one is left alone

struct Parameters {
  double phase = 0.5;  // the part of the width that turns
  TwistTables tables;
};

struct Swirl {
  double phase;
  int angle;  // degrees at the full width
  bool fromLeft, smooth;
};

PackedDib SwirlStrip(PackedDib bitmap, const Swirl& swirl, TwistTables& tables) {
  int left = 0, strip = 0, height = 0;
  {
    const DibView view(bitmap);
    if (!view) return {};
    strip = static_cast<int>(view.Width() * swirl.phase);
    left = swirl.fromLeft ? 0 : view.Width() - strip;
    height = view.Height();
  }
  if (strip < kLeastStrip) return bitmap;
  const int turn = static_cast<int>(swirl.angle * swirl.phase);
  const PackedDib turned =
      TwistMask(CropDib(bitmap, {left, 0, left + strip, height}), swirl.fromLeft ? turn : -turn, swirl.smooth, tables);
  const DibView from(turned), to(bitmap);
  if (!from || !to) return {};
  CopyRegion(to, left, 0, from, 0, 0, strip, height);
  return bitmap;
}

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  const Swirl swirl = {parameters.phase, composer.Number(kAngle), ReadDirection(*context.dialog, kDirection) != 0,
                       composer.Check(kSmooth)};
  const auto turn = [&](PackedDib bitmap) { return SwirlStrip(std::move(bitmap), swirl, parameters.tables); };
  // A flat colour stays as it is.
  if (!composer.IsSolid(kRoles.fill)) composer.onFillBitmap = turn;
  if (!composer.IsSolid(kRoles.shadow)) composer.onShadowBitmap = turn;
  composer.onShadowMask = composer.onTextMask = composer.onOutlineMask = turn;
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Parameters parameters;
  return RunTest(context, &parameters, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames), half = frames / 2;
    Parameters parameters;
    if (!BeginRun(context, &parameters, Render, std::int64_t{2} * half + 1)) return false;
    std::vector<PhaseFrame> plan;
    const auto add = [&](int step, int shown, std::optional<int> progress) {
      plan.push_back({static_cast<double>(step) / half, shown, progress, step});
    };
    int count = 0;
    for (int i = 0; i < half; ++i) add(i, delay, count++);
    for (int j = half; j > 0; --j) add(j, delay, count++);
    add(0, delay + pause, {});
    return AppendPhases<Parameters>(context, Render, plan, frames,
                                    [](Parameters& lane, double phase) { lane.phase = phase; });
  });
}

}  // namespace

const EffectDescriptor kSingularity =
    EffectOf<kSingularityPanel>("A whirlpool swallows the text and lets it go.", Test, Build);

}  // namespace glyphmotion
