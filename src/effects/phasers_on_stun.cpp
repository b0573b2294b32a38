// SPDX-License-Identifier: MIT
// Phasers on Stun: coloured rays flash across the inside of the letters, each dying away over four frames.
#include <iterator>
#include <vector>

#include "effects/effect_table.h"
#include "effects/optional_colours.h"
#include "effects/phase_run.h"
#include "effects/ray_painter.h"
#include "platform/random.h"
#include "platform/run_state.h"
#include "resources/panel_phasers_on_stun.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kPhasersOnStunPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kSeed = kPanel.Option("Seed"), kDensity = kPanel.Option("Density"),
              kPower = kPanel.Option("Beamsize");
constexpr OptionalColourControls kColours = OptionalColoursOf(kPanel, "BeamColor", "BeamEnable");

struct PhaserBeam {
  Point from, to;  // frame pixels; on two sides of the frame that face each other
  int level;
  Colour colour;
  int frame;  // the one in which it is drawn
  int width;
};

struct PhaserParams {
  int frame = 0;
  std::vector<PhaserBeam> beams;
  bool ready = false;
  RayPainter rays;
};

// The strengths of a ray in the frames from its first on.
constexpr int kLevels[] = {255, 192, 128, 64};

// A ray from one side of the frame to the side that faces it. The start is drawn first.
PhaserBeam DrawBeam(int side, int width, int height) {
  PhaserBeam beam{};
  const bool upright = side == 0 || side == 2;
  const int reach = upright ? width : height;
  const int start = NextRandom() % reach, end = NextRandom() % reach;
  const bool fromFar = side == 1 || side == 2;
  const int far = upright ? height : width;
  const auto place = [&](bool atFar, int along) {
    const int across = atFar ? far : 0;
    return upright ? Point{along, across} : Point{across, along};
  };
  beam.from = place(fromFar, start);
  beam.to = place(!fromFar, end);
  return beam;
}

// Two rays in a row never leave from the same side. A ray's frames wrap around the end of the run, for the loop.
void MakeBeams(PhaserParams& params, const Dialog& dialog, int width, int height) {
  if (params.ready) return;
  SeedRandom(static_cast<std::uint32_t>(ReadNumber(dialog, kSeed)));
  const OptionalColours colours = ReadOptionalColours(dialog, kColours);
  const int frames = ReadNumber(dialog, kFrames), power = ReadNumber(dialog, kPower);
  const int density = ReadNumber(dialog, kDensity);
  params.beams.reserve(static_cast<std::size_t>(density) * std::size(kLevels));
  for (int made = 0, last = -1; made < density; ++made) {
    int side = last;
    while (side == last) side = NextRandom() & 3;
    last = side;
    PhaserBeam beam = DrawBeam(side, width, height);
    beam.colour = colours.Draw();
    beam.frame = NextRandom() % frames;
    beam.width = power;
    for (int level : kLevels) {
      beam.level = level;
      params.beams.push_back(beam);
      beam.frame = (beam.frame + 1) % frames;
    }
  }
  params.ready = true;
}

bool PaintBeams(PhaserParams& params, const DibView& picture) {
  for (const PhaserBeam& beam : params.beams) {
    if (beam.frame != params.frame) continue;
    if (EndRequested()) return false;
    if (!params.rays.Prepare(picture.Width(), picture.Height())) return false;
    params.rays.Paint(picture, beam.from, beam.to, beam.width, beam.level, beam.colour);
  }
  return true;
}

PackedDib Render(EffectContext& context) {
  PhaserParams& params = ParametersOf<PhaserParams>(context);
  if (context.flags & kTestCall) params.frame = ReadNumber(*context.dialog, kFrames) / 2;
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.onSize = [&](int width, int height) {
    MakeBeams(params, *context.dialog, width, height);
    return true;
  };
  composer.onFillBitmap = [&](PackedDib fill) {
    const DibView picture(fill);
    if (!picture || !PaintBeams(params, picture)) return PackedDib();
    return fill;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  PhaserParams params;
  return RunTest(context, &params, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int frames = ReadNumber(*context.dialog, kFrames);
    PhaserParams params;
    if (!BeginRun(context, &params, Render, frames)) return false;
    return AppendPhases<PhaserParams>(context, Render, PlanEvenly(context, frames), frames,
                                      [](PhaserParams& lane, double i) { lane.frame = static_cast<int>(i); });
  });
}

}  // namespace

const EffectDescriptor kPhasersOnStun =
    EffectOf<kPhasersOnStunPanel>("Coloured rays flash across the letters.", Test, Build, kLoops, {"Stun"});

}  // namespace glyphmotion
