// SPDX-License-Identifier: MIT
// Radar: inside the letters a sweep turns round the middle of the picture, a bright leading edge with a trail that
// fades behind it, once round in a closed loop.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <utility>

#include "effects/colour_blend.h"
#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "image/angles.h"
#include "image/filters.h"
#include "image/surface.h"
#include "platform/run_state.h"
#include "resources/panel_radar.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kRadarPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kTraceAngle = kPanel.Option("Angle"), kTraceColour = kPanel.Option("TraceColor"),
              kIncrement = kPanel.Option("Increment"), kMaskCentre = kPanel.Option("MaskCenter");

constexpr int kScale = 4;  // the sweep is drawn at this many times the size

struct Turn {
  int angle = 0;      // whole degrees, 0 or negative
  int increment = 0;  // signed, of the list
};

struct Sweep {
  int width, height;  // of the frame
  int angle, increment, traceAngle;
  bool maskCentre;
};

Point OnRim(double radius, int degrees, Point centre) {
  const double angle = RadiansByDegree(degrees);  // 0 is straight up, angles grow clockwise
  return {static_cast<int>(radius * std::sin(angle)) + centre.x,
          static_cast<int>(-radius * std::cos(angle)) + centre.y};
}

// One wedge for about each pixel of the rim, of a grey that grows towards the leading end. Their sides lie at whole
// degrees, so that most wedges have no width and paint nothing. The last one of the trace is skipped.
void DrawWedges(DrawingSurface& surface, const Sweep& sweep, Point centre) {
  const double x = centre.x, y = centre.y;
  const int radius = static_cast<int>(std::sqrt(y * y + x * x) + 0.5);  // to the corner
  const int count = static_cast<int>(2 * radius * std::numbers::pi * (static_cast<double>(sweep.traceAngle) / 360));
  const bool backwards = sweep.increment < 1;
  const int base = backwards ? sweep.angle : sweep.traceAngle - sweep.angle;
  int begin = base;
  for (int i = 0; i + 1 < count && !EndRequested(); ++i) {
    const int end = static_cast<int>(static_cast<double>(i + 1) / count * sweep.traceAngle + base);
    if (begin != end) {
      const int strength = static_cast<int>(static_cast<double>(i) / count * 255);
      const int grey = backwards ? 255 - strength : strength;
      const Point from = OnRim(radius, begin, centre), to = OnRim(radius, end, centre);
      const Point wedge[] = {from, centre, to, from};
      surface.FillPolygon(wedge, MakeColour(grey, grey, grey));
    }
    begin = end;
  }
}

// The sweep's strength at every pixel as a mask.
PackedDib DrawSweep(const Sweep& sweep) {
  DrawingSurface surface(kScale * sweep.width, kScale * sweep.height);
  if (!surface) return {};
  const int middleX = sweep.width / 2, middleY = sweep.height / 2;
  const Point centre{middleX * kScale, middleY * kScale};
  DrawWedges(surface, sweep, centre);
  if (sweep.maskCentre) {
    // Round the pivot the wedges crowd.
    const int reach = sweep.height / 10 * kScale;
    surface.FillEllipse({centre.x - reach, centre.y - reach, centre.x + reach, centre.y + reach}, 0);
  }
  PackedDib mask = surface.EndAsMask();
  PackedDib reduced = ResampleByPercent(mask, 100 / kScale, 100 / kScale);
  return reduced ? std::move(reduced) : std::move(mask);
}

bool PaintTrace(const DibView& fill, const DibView& sweep, Colour colour) {
  if (!fill || !sweep) return false;
  const int right = std::min(fill.Width(), sweep.Width()), bottom = std::min(fill.Height(), sweep.Height());
  for (int y = 0; y < bottom && !EndRequested(); ++y) BlendColourMasked(fill.Row(y), sweep.Row(y), right, colour);
  return true;
}

PackedDib Render(EffectContext& context) {
  const Turn& turn = ParametersOf<Turn>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.onFillBitmap = [&](PackedDib fill) {
    const DibView view(fill);
    const PackedDib sweep = DrawSweep({view.Width(), view.Height(), turn.angle, turn.increment,
                                       composer.Number(kTraceAngle), composer.Check(kMaskCentre)});
    if (!PaintTrace(view, DibView(sweep), ReadColour(*context.dialog, kTraceColour))) return PackedDib();
    return fill;
  };
  return composer.Compose();
}

int ReadIncrement(const Dialog& dialog) { return static_cast<int>(GetNumber(dialog, kIncrement, true)); }

int Test(EffectContext& context) noexcept {
  Turn turn;
  turn.increment = ReadIncrement(*context.dialog);
  return RunTest(context, &turn, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    Turn turn;
    turn.increment = ReadIncrement(*context.dialog);
    const int step = std::abs(turn.increment);
    if (step == 0) {
      context.failure = "A radar needs an increment. Choose one from the list.";
      return false;
    }
    const int frames = 360 / step;
    // The sense of rotation is in the drawing; the angle falls in both cases.
    if (!BeginRun(context, &turn, Render, frames)) return false;
    return AppendPhases<Turn>(context, Render, PlanEvenly(context, frames), frames,
                              [step, increment = turn.increment](Turn& lane, double i) {
                                lane = {-static_cast<int>(i) * step, increment};
                              });
  });
}

}  // namespace

const EffectDescriptor kRadar =
    EffectOf<kRadarPanel>("A sweep with a fading trail turns inside the letters.", Test, Build, kLoops);

}  // namespace glyphmotion
