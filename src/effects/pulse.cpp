// SPDX-License-Identifier: MIT
// Pulse: the text swells from the centre like a beating heart, bulging towards the viewer, and sinks back. Materials
// and letters bulge together.
#include <cstdint>
#include <utility>

#include "effects/bulge.h"
#include "effects/effect_table.h"
#include "effects/repeated_frames.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

constexpr PanelRoles kRoles{.fill = 784,
                            .shadow = 786,
                            .background = 788,
                            .outline = 790,
                            .fillOpacity = 792,
                            .shadowOpacity = 794,
                            .softness = 798,
                            .shadowOffset = 800,
                            .shadowDirection = 804,
                            .shadowEnable = 806,
                            .outlineEnable = 807};
constexpr int kFrames = 796, kIntensity = 802;

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
    const int delay = ReadNumber(dialog, ControlId::Delay), pause = ReadNumber(dialog, ControlId::Pause);
    const int frames = ReadNumber(dialog, kFrames), half = frames / 2;
    const double intensity = ReadNumber(dialog, kIntensity) / 100.0;
    Parameters parameters;
    int width = 0, height = 0;
    if (!PrimeRun(context, &parameters, Render, &width, &height)) return false;
    if (!RunFits(context, width, height, std::int64_t{2} * half + 1)) return false;
    RepeatedFrames repeated(context);
    const auto next = [&](int step) {
      parameters.phase = -((static_cast<double>(step) / half) * intensity);
      return repeated.Next(static_cast<int>(parameters.phase * 100), Render);
    };
    int count = 0;
    for (int i = 0; i < half; ++i) {
      if (!AppendWithProgress(context, next(i), delay, count++, frames)) return false;
    }
    for (int j = half - 1; j >= 0; --j) {
      if (!AppendWithProgress(context, next(j), delay, count++, frames)) return false;
    }
    return AppendQuietly(context, next(0), delay + pause);
  });
}

}  // namespace

const EffectDescriptor kPulse = {"Pulse", &kPulsePanel, Test, Build, TransparentColour<kRoles.background>, &kRoles};

}  // namespace glyphmotion
