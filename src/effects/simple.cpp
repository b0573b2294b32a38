// SPDX-License-Identifier: MIT
// Simple: the text scrolls once across the frame in one of four directions and pauses where it rests.
// The reference case of the composer, which it uses without change.
#include <algorithm>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "resources/panel_simple.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kSimplePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kScroll = kPanel.Option("Scroll");

struct Parameters {
  ScrollOffset offset;
  Rect box;  // of the text at rest, out of the last render
};

PackedDib Render(EffectContext& context) {
  Parameters& parameters = ParametersOf<Parameters>(context);
  FrameComposer composer = MakeComposer(context, kRoles, parameters.offset);
  composer.options.acrossCanvas = true;
  PackedDib frame = composer.Compose();
  parameters.box = composer.TextBox();
  return frame;
}

int Test(EffectContext& context) noexcept {
  Parameters rest;
  return RunTest(context, &rest, Render);
}

enum Direction { kUp = 0, kRight = 1, kLeft = 2, kDown = 3 };

// One run across the frame: the text starts beyond one side and ends as far beyond the other.
struct Run {
  bool vertical;
  double position, step;  // pixels; the step is negative where the position falls
  int frames;
};

Run PlanRun(int direction, FrameSize size, const Rect& box, int frames) {
  const bool vertical = direction == kUp || direction == kDown;
  const bool rising = direction == kRight || direction == kDown;
  const int side = vertical ? std::max(size.height - box.top, box.bottom) : std::max(size.width - box.left, box.right);
  // Never less than a pixel a frame.
  const int count = std::min(frames, 2 * side);
  const double step = static_cast<double>(2 * side) / count;
  return {vertical, rising ? -static_cast<double>(side) : static_cast<double>(side), rising ? step : -step, count};
}

// The frame nearest to rest from the start side.
bool Holds(double previous, double position, double step) {
  return step < 0 ? position >= 0 && position + step < 0 : position >= 0 && previous < 0;
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    Parameters parameters;
    if (!ReadCheck(dialog, ControlId::Animated)) {
      context.flags |= kBuildCall;
      context.parameters = &parameters;
      return AppendWithProgress(context, Render(context), delay, 0, 1);
    }
    const std::optional<FrameSize> size = PrimeRun(context, &parameters, Render);
    if (!size) return false;
    Run run = PlanRun(ReadDirection(dialog, kScroll), *size, parameters.box, ReadNumber(dialog, kFrames));
    if (!RunFits(context, *size, run.frames)) return false;
    std::vector<PhaseFrame> plan;
    for (int i = 0; i < run.frames; ++i) {
      const double previous = run.position;
      run.position += run.step;
      const bool rests = i == run.frames - 1 || Holds(previous, run.position, run.step);
      plan.push_back({run.position, rests ? delay + pause : delay, i, {}});
    }
    const auto set = [vertical = run.vertical](Parameters& lane, double position) {
      (vertical ? lane.offset.y : lane.offset.x) = static_cast<int>(position);
    };
    return AppendPhases<Parameters>(context, Render, plan, run.frames, set);
  });
}

}  // namespace

const EffectDescriptor kSimple =
    EffectOf<kSimplePanel>("The text scrolls through and rests.", Test, Build, kCanStandStill);

}  // namespace glyphmotion
