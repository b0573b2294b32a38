// SPDX-License-Identifier: MIT
#include "effects/iris_cycle.h"

#include <algorithm>
#include <vector>

#include "effects/iris_mask.h"
#include "effects/phase_run.h"

namespace glyphmotion {
namespace {

// The transition from one material to another through iris `which`, at its start.
IrisParams Transition(const Dialog& dialog, const IrisControls& controls, int from, int to, int which) {
  const auto at = [](const std::array<int, 5>& ids, int i) { return ids[static_cast<std::size_t>(i)]; };
  IrisParams params;
  params.first = at(controls.materials, from);
  params.second = at(controls.materials, to);
  params.size = ReadNumber(dialog, at(controls.sizes, which));
  params.style = std::clamp(ReadSelection(dialog, at(controls.styles, which)), 0, static_cast<int>(kIrisNone));
  return params;
}

// A material opens through the iris of its own number.
std::vector<IrisParams> Transitions(const Dialog& dialog, const IrisControls& controls) {
  std::vector<IrisParams> transitions;
  int reached = 0;
  const auto goTo = [&](int next) {
    transitions.push_back(Transition(dialog, controls, reached, next, next));
    reached = next;
  };
  goTo(1);
  for (int i = 0; i < 3; ++i) {
    if (ReadCheck(dialog, controls.enables[static_cast<std::size_t>(i)])) goTo(2 + i);
  }
  goTo(0);
  return transitions;
}

}  // namespace

PackedDib RenderIris(FrameComposer& composer, const IrisParams& params, int width, int height) {
  const PackedDib first = composer.RenderMaterial(params.first, width, height);
  if (!first) return {};
  const PackedDib second = composer.RenderMaterial(params.second, width, height);
  if (!second) return {};
  return MixThroughMask(first, second, IrisMask(width, height, params.style, params.size, params.phase));
}

int TestIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept {
  IrisParams params = Transition(*context.dialog, controls, 0, 1, 0);
  params.phase = 0.5;
  return RunTest(context, &params, render);
}

int BuildIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int total = ReadNumber(dialog, controls.frames);
    std::vector<IrisParams> transitions = Transitions(dialog, controls);
    const int frames = total / static_cast<int>(transitions.size());

    IrisParams proof = Transition(dialog, controls, 0, 1, 0);
    const std::int64_t kept = std::int64_t{frames} * static_cast<std::int64_t>(transitions.size());
    if (!BeginRun(context, &proof, render, kept)) return false;
    int made = 0;
    for (IrisParams& params : transitions) {
      if (frames == 0) break;
      // The first frame here, so that the transition's materials are in the cache for all threads.
      context.parameters = &params;
      params.phase = 0;
      if (!AppendWithProgress(context, render(context), delay + pause, made++, total)) return false;
      std::vector<PhaseFrame> plan;
      for (int i = 1; i < frames; ++i) plan.push_back({static_cast<double>(i) / frames, delay, made++, {}});
      const auto set = [transition = params](IrisParams& lane, double phase) {
        lane = transition;
        lane.phase = phase;
      };
      if (!AppendPhases<IrisParams>(context, render, plan, total, set)) return false;
    }
    return true;
  });
}

}  // namespace glyphmotion
