// SPDX-License-Identifier: MIT
// Fuse: inside the text one material is swapped for another by thin leaves that slide past each other, neighbours in
// opposite directions, like the teeth of a zip. They come together, rest, and part again.
#include <utility>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "resources/panel_fuse.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kFusePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kScroll = kPanel.Option("Scroll"), kLeafSize = kPanel.Option("Size"),
              kBackFill = kRoles.material2;
constexpr int kUpAndDown = 1;  // of the scroll picker: leaves are columns

constexpr double kHalfWay = 0.5;

struct Leaves {
  double phase = kHalfWay;  // -1 the back fill, 0 the fill, 1 the back fill again
};

// Leaves of `leaf` rows (or columns) of `front`, slid by the phase over `back`, which follows them from the far side.
// While the phase is negative `front` comes in, and what follows it still lies outside.
PackedDib PaintFuseFill(const PackedDib& front, const PackedDib& back, int leaf, bool columns, double phase) {
  PackedDib result = DuplicateDib(back);
  {
    const DibView to(result), a(front), b(back);
    if (!to || !a || !b) return {};
    const int width = to.Width(), height = to.Height();
    const int length = columns ? height : width, across = columns ? width : height;
    const auto slide = [&](const DibView& from, int at, int by) {
      if (columns) {
        CopyRegion(to, at, by, from, at, 0, leaf, height);
      } else {
        CopyRegion(to, by, at, from, 0, at, width, leaf);
      }
    };
    const int shift = static_cast<int>(length * phase);
    for (int at = 0; at < across; at += 2 * leaf) {
      slide(a, at, -shift);
      slide(a, at + leaf, shift);
      slide(b, at, length - shift);
      slide(b, at + leaf, shift - length);
    }
  }
  return result;
}

PackedDib Render(EffectContext& context) {
  const double phase = ParametersOf<Leaves>(context).phase;
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.makeFillBitmap = [&](int width, int height) {
    const PackedDib front = composer.RenderMaterial(kRoles.fill, width, height);
    const PackedDib back = composer.RenderMaterial(kBackFill, width, height);
    return PaintFuseFill(front, back, composer.Number(kLeafSize), ReadDirection(*context.dialog, kScroll) == kUpAndDown,
                         phase);
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Leaves leaves;
  return RunTest(context, &leaves, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames), half = frames / 2;
    const double step = 1.0 / half;
    Leaves leaves;
    if (!BeginRun(context, &leaves, Render, 2 * half)) return false;
    std::vector<PhaseFrame> plan;
    double phase = -1.0;
    for (int i = 0; i < half; ++i, phase += step) plan.push_back({phase, delay, i, {}});
    plan.push_back({0, delay + pause, half, {}});
    // The leaves part with a first step of double length.
    phase = step;
    for (int j = 1; j < half; ++j) {
      phase += step;
      plan.push_back({phase, j == half - 1 ? delay + pause : delay, half + j, {}});
    }
    return AppendPhases<Leaves>(context, Render, plan, frames, [](Leaves& lane, double at) { lane.phase = at; });
  });
}

}  // namespace

const EffectDescriptor kFuse = EffectOf<kFusePanel>("Two materials slide through each other in leaves.", Test, Build, 0,
                                                    {"", "--set Style009Size=4"});

}  // namespace glyphmotion
