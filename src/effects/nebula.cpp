// SPDX-License-Identifier: MIT
// Nebula: the text condenses out of a cloud of scattered pixels, holds, and dissolves again, until the bare background
// is left. All layers are scattered with one seed, so that colours and masks break up alike.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "effects/scatter.h"
#include "resources/panel_nebula.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kNebulaPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kSeed = kPanel.Option("Seed"), kSize = kPanel.Option("Size"),
              kFade = kPanel.Option("Fadetext"), kScatterShadow = kPanel.Option("Scrambleshadow");

struct Parameters {
  std::uint32_t seed = 0;
  double scatter = 0;  // percent: 0 is clear text, 100 the widest cloud
  ScatterTables tables;
};

// The cloud's radius in pixels.
int RadiusOf(double scatter, int size) {
  return static_cast<int>(std::sin(scatter / 100 * (std::numbers::pi / 2)) * size);
}

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  const int size = composer.Number(kSize), radius = RadiusOf(parameters.scatter, size);
  const bool withShadow = composer.Check(kScatterShadow);
  FrameOptions& options = composer.options;
  options.margin += size / 2;
  if (composer.Check(kFade)) {
    const double clear = (100 - parameters.scatter) / 100;
    options.fillOpacity = static_cast<int>(options.fillOpacity * clear);
    options.outlineLevel = static_cast<int>(clear * 255);
    if (withShadow) options.shadowOpacity = static_cast<int>(options.shadowOpacity * clear);
  }
  composer.backgroundOnly = (context.flags & kLastOfFade) != 0;
  const auto scatter = [&, radius](PackedDib bitmap) {
    return radius < 1 ? std::move(bitmap) : Scatter(bitmap, radius, parameters.seed, parameters.tables);
  };
  composer.onFillBitmap = composer.onTextMask = composer.onOutlineMask = scatter;
  if (withShadow) composer.onSoftShadowMask = scatter;
  return composer.Compose();
}

std::uint32_t ReadSeed(const Dialog& dialog) { return static_cast<std::uint32_t>(ReadNumber(dialog, kSeed)); }

int Test(EffectContext& context) noexcept {
  Parameters parameters;
  parameters.seed = ReadSeed(*context.dialog);
  parameters.scatter = 10.0;
  return RunTest(context, &parameters, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int odd = ReadNumber(dialog, kFrames) | 1;
    Parameters parameters;
    parameters.seed = ReadSeed(dialog);
    const std::optional<FrameSize> size = PrimeRun(context, &parameters, Render);
    if (!size) return false;
    const int frames = std::min(odd, 2 * size->height);
    if (!RunFits(context, *size, std::int64_t{frames} + 1)) return false;
    double step = -(100.0 / (frames * 0.5));
    double scatter = 100.0;
    bool turned = false;
    std::vector<PhaseFrame> plan;
    for (int i = 0; i < frames; ++i) {
      scatter += step;
      const bool holds = scatter < 0 && !turned;
      if (holds) {
        scatter = 0;
        step = -step;
        turned = true;
      }
      plan.push_back({scatter, holds ? delay + pause : delay, i, {}});
    }
    const auto set = [seed = parameters.seed](Parameters& lane, double percent) {
      lane.seed = seed;
      lane.scatter = percent;
    };
    if (!AppendPhases<Parameters>(context, Render, plan, frames, set)) return false;
    // The run ends on the bare background.
    context.flags |= kLastOfFade;
    parameters.scatter = 0;
    return AppendQuietly(context, Render(context), delay + pause);
  });
}

}  // namespace

const EffectDescriptor kNebula = EffectOf<kNebulaPanel>("The text condenses out of a cloud and dissolves again.", Test,
                                                        Build, 0, {"", "--fill #5a3fa0"});

}  // namespace glyphmotion
