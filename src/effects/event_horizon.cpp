// SPDX-License-Identifier: MIT
// Event Horizon: the text comes out of a flat line. Each column of the letters is squeezed towards the middle row; a
// bump of height spreads until the whole text is upright, the text rests, and the same frames run backwards.
#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "effects/column_profile.h"
#include "effects/column_warp.h"
#include "effects/effect_table.h"
#include "resources/panel_event_horizon.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kEventHorizonPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kAlternate = kPanel.Option("Alternate"),
              kRadius = kPanel.Option("Radius");

// The outline mask is four pixels wider than the frame; the columns there are blank.
constexpr std::size_t kSpareColumns = 4 * kWarpScale;

struct HorizonParams {
  std::vector<double> curve;          // a squeeze factor for each column of the frame, enlarged; then the spare ones
  std::size_t curveCount = 0;         // without the spare ones
  std::vector<PackedDib> keptFrames;  // duplicates of the rising half's frames
  bool bypass = false;                // masks pass unsqueezed
  std::vector<int> percents;          // of the curve
  WarpedLayer shadow, text, outline;

  std::span<double> Curve() { return {curve.data(), curveCount}; }
};

void SetCurve(EffectContext& context, HorizonParams& params, double v) {
  SetHorizonCurve(params.Curve(), v, ReadCheck(*context.dialog, kAlternate), ReadNumber(*context.dialog, kRadius));
}

// The first render of a run knows the width first.
void MakeCurve(EffectContext& context, HorizonParams& params, int width) {
  params.curveCount = static_cast<std::size_t>(width) * kWarpScale;
  params.curve.assign(params.curveCount + kSpareColumns, 0.0);
  if (context.flags & kTestCall) SetCurve(context, params, kSampleHorizon);
  if (context.flags & kBuildCall) std::fill_n(params.curve.begin(), params.curveCount, 0.99);
}

// The percent of its height that a column keeps; 0 leaves it blank.
int PercentOf(double factor) {
  return factor == 0.0 || factor > 1.0 ? 0 : std::min(100, static_cast<int>(std::fabs(factor) * 100.0));
}

// Fills in the percents; gives the columns that are not blank.
ColumnSpan FindPercents(HorizonParams& params) {
  const int columns = static_cast<int>(params.curve.size());
  params.percents.assign(params.curve.size(), 100);
  if (params.bypass) return {0, columns};
  ColumnSpan filled{columns, 0};
  for (int x = 0; x < columns; ++x) {
    const auto at = static_cast<std::size_t>(x);
    params.percents[at] = PercentOf(params.curve[at]);
    if (params.percents[at]) filled = {std::min(filled.begin, x), x + 1};
  }
  return filled;
}

PackedDib Render(EffectContext& context) {
  HorizonParams& params = ParametersOf<HorizonParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  ColumnSpan filled;
  composer.onSize = [&](int width, int) {
    if (params.curve.empty()) MakeCurve(context, params, width);
    filled = FindPercents(params);
    return true;
  };
  const auto squash = [&](WarpedLayer& layer) {
    return [&](PackedDib mask) {
      return layer.Warp(std::move(mask), filled, [&](const DibView& from, const DibView& to, int left) {
        SqueezeColumns(from, to, left, params.percents);
      });
    };
  };
  composer.onShadowMask = squash(params.shadow);
  composer.onTextMask = squash(params.text);
  composer.onOutlineMask = squash(params.outline);
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  HorizonParams params;
  return RunTest(context, &params, Render);
}

// Both quarters of the rising half: the bump spreads, then the rest fills out. Each frame is kept.
bool Rise(EffectContext& context, HorizonParams& params, int quarter, int delay, int half) {
  const double step = 1.0 / quarter;
  for (int i = 0; i < 2 * quarter; ++i) {
    if (i < quarter) {
      SetCurve(context, params, static_cast<double>(i) / quarter);
    } else {
      for (double& factor : params.Curve()) factor = std::min(1.0, factor + step);
    }
    PackedDib frame = Render(context);
    PackedDib kept = DuplicateDib(frame);
    if (!kept) return false;
    params.keptFrames.push_back(std::move(kept));
    if (!AppendWithProgress(context, std::move(frame), delay, i + 1, half)) return false;
  }
  return true;
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames), quarter = frames / 4;
    HorizonParams params;
    if (!BeginRun(context, &params, Render, 4 * std::int64_t{quarter} + 1)) return false;
    params.keptFrames.reserve(static_cast<std::size_t>(frames));
    if (!Rise(context, params, quarter, delay, frames / 2)) return false;

    params.bypass = true;
    if (!AppendQuietly(context, Render(context), delay + pause)) return false;
    for (; !params.keptFrames.empty(); params.keptFrames.pop_back()) {
      const bool last = params.keptFrames.size() == 1;
      if (!AppendQuietly(context, std::move(params.keptFrames.back()), last ? delay + pause : delay)) return false;
    }
    return true;
  });
}

}  // namespace

const EffectDescriptor kEventHorizon = EffectOf<kEventHorizonPanel>("The text rises out of a flat line and falls back.",
                                                                    Test, Build, 0, {"Event horizon"});

}  // namespace glyphmotion
