// SPDX-License-Identifier: MIT
#include "effects/passing_bump.h"

#include <algorithm>

#include "effects/column_profile.h"
#include "effects/phase_run.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxText = 4096;  // characters, the appended blank not counted
constexpr int kOutlineColumns = 4;      // by which the outline mask is wider than the frame

// Fills in the profile and the values; gives the columns under the bump.
ColumnSpan PlaceBump(PassingBump& bump, const BumpStyle& style, int width, int lengthPercent, int strength) {
  const int columns = width * kWarpScale;
  bump.profile.resize(static_cast<std::size_t>(columns));
  int start = 0, length = 0;
  const float covered = static_cast<float>(bump.position) / static_cast<float>(bump.total);
  if (!(covered < 0.0f)) {
    start = static_cast<int>(static_cast<float>(columns) * covered);
    length = static_cast<int>(columns * (lengthPercent / 100.0));
  }
  SetBumpProfile(bump.profile, start, length);
  bump.values.assign(static_cast<std::size_t>(columns + kOutlineColumns * kWarpScale),
                     style.columnValue(0.0f, strength));
  for (std::size_t x = 0; x < bump.profile.size(); ++x) bump.values[x] = style.columnValue(bump.profile[x], strength);
  return {std::min(start, columns), std::min(start + length, columns)};
}

}  // namespace

PackedDib RenderBump(EffectContext& context, const BumpStyle& style) {
  PassingBump& bump = ParametersOf<PassingBump>(context);
  FrameComposer composer = MakeComposer(context, style.roles);
  std::u32string& text = composer.options.line.text;
  text.resize(std::min(text.size(), kMaxText));
  // A build works on the blank alone when there is no text; a sample stays empty.
  composer.allowEmptyText = (context.flags & kBuildCall) != 0;
  const int strength = composer.Number(style.strength);
  if (style.addsHeight) composer.options.extraHeight = strength / kWarpScale;

  ColumnSpan moving;
  composer.onSize = [&](int width, int) {
    moving = PlaceBump(bump, style, width, composer.Number(style.length), strength);
    return true;
  };
  const auto through = [&](WarpedLayer& layer) {
    return [&](PackedDib dib) {
      return layer.Warp(std::move(dib), moving, [&](const DibView& from, const DibView& to, int left) {
        style.warp(from, to, left, bump.values);
      });
    };
  };
  // Patterns ride the bump; a flat colour looks the same without.
  if (!composer.IsSolid(style.roles.fill)) composer.onFillBitmap = through(bump.fill);
  composer.onTextMask = through(bump.text);
  composer.onOutlineMask = through(bump.outline);
  return composer.Compose();
}

int TestBump(EffectContext& context, Renderer render) noexcept {
  PassingBump bump;
  bump.total = 255;
  bump.position = 128;
  return RunTest(context, &bump, render);
}

bool BuildBump(EffectContext& context, Renderer render, int total, int steps, int rest) {
  const auto [delay, pause] = ReadPace(*context.dialog);
  PassingBump bump;
  bump.total = total;
  context.flags |= kBuildCall;
  context.parameters = &bump;
  bump.position = steps > 0 ? 0 : rest;
  PackedDib frame = render(context);
  {
    const DibView view(frame);
    if (!view || !RunFits(context, {view.Width(), view.Height()}, std::int64_t{steps} + 1)) return false;
  }
  if (steps <= 0) return AppendQuietly(context, std::move(frame), delay + pause);
  if (!AppendWithProgress(context, std::move(frame), delay, 0, steps)) return false;
  std::vector<PhaseFrame> plan;
  for (int k = 1; k < steps; ++k) plan.push_back({static_cast<double>(k), delay, k, {}});
  plan.push_back({static_cast<double>(rest), delay + pause, {}, {}});
  return AppendPhases<PassingBump>(context, render, plan, steps, [total](PassingBump& lane, double position) {
    lane.total = total;
    lane.position = static_cast<int>(position);
  });
}

}  // namespace glyphmotion
