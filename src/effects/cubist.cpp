// SPDX-License-Identifier: MIT
// Cubist: hollow coloured squares grow and shrink inside the letters, overlapping like a restless abstract painting.
#include <algorithm>
#include <vector>

#include "effects/colour_blend.h"
#include "effects/effect_table.h"
#include "effects/optional_colours.h"
#include "effects/phase_run.h"
#include "platform/random.h"
#include "platform/run_state.h"
#include "resources/panel_cubist.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kCubistPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kDensity = kPanel.Option("Density"), kSeed = kPanel.Option("Seed"),
              kVariableDensity = kPanel.Option("VariAlpha"), kVariableWidth = kPanel.Option("VariWidth"),
              kLineWidth = kPanel.Option("Width");
constexpr OptionalColourControls kColours = OptionalColoursOf(kPanel, "BeamColor", "BeamEnable");

struct CubistSquare {
  int lineWidth, level;
  int x, y;  // the centre
  int step;  // place in the cycle of growing and shrinking, 0 to frames - 1
  Colour colour;
  bool variableLevel, variableWidth;
};

struct CubistParams {
  int frame = 0;  // the steps that all squares have gone
  std::vector<CubistSquare> squares;
  int frames = 0;
  int height = 0;  // of the frame: at its largest a square is twice as high
  bool ready = false;
};

void MakeSquares(CubistParams& params, const Dialog& dialog, int width, int height) {
  if (params.ready) return;
  SeedRandom(static_cast<std::uint32_t>(ReadNumber(dialog, kSeed)));
  const OptionalColours colours = ReadOptionalColours(dialog, kColours);
  CubistSquare square{};
  square.lineWidth = ReadNumber(dialog, kLineWidth);
  square.level = 255;
  square.variableLevel = ReadCheck(dialog, kVariableDensity);
  square.variableWidth = ReadCheck(dialog, kVariableWidth);
  params.frames = ReadNumber(dialog, kFrames);
  params.height = height;
  params.squares.assign(static_cast<std::size_t>(ReadNumber(dialog, kDensity)), square);
  for (CubistSquare& each : params.squares) {
    each.x = NextRandom() % width;
    each.y = NextRandom() % height;
    each.step = NextRandom() % params.frames;
    each.colour = colours.Draw();
  }
  params.ready = true;
}

// The ring of a square's border, `lineWidth` inwards from its sides; a border wider than the square fills it.
void PaintSquare(const DibView& picture, const CubistSquare& square, int half, int lineWidth, int level) {
  const int size = 2 * half, left = square.x - half, top = square.y - half;
  const int border = std::min(lineWidth, half);
  const auto paint = [&](int y, int from, int to) {
    from = std::max(from, 0);
    to = std::min(to, picture.Width());
    if (from < to) BlendColour(picture.Row(y) + 3 * static_cast<std::size_t>(from), to - from, square.colour, level);
  };
  const int end = std::min(top + size, picture.Height());
  for (int y = std::max(top, 0); y < end && !EndRequested(); ++y) {
    if (y < top + border || y >= top + size - border) {
      paint(y, left, left + size);
    } else {
      paint(y, left, left + border);
      paint(y, left + size - border, left + size);
    }
  }
}

// Paints the square at its place in the cycle.
void PaintSquareOf(const CubistSquare& square, const CubistParams& params, const DibView& picture) {
  const int middle = params.frames / 2, step = (square.step + params.frame) % params.frames;
  const int t = step <= middle ? step : params.frames - step;
  const double grown = static_cast<double>(t) / middle;
  int level = square.level, lineWidth = square.lineWidth;
  if (square.variableLevel) level = std::clamp(static_cast<int>(level * grown), 0, 255);
  if (square.variableWidth) lineWidth = std::clamp(static_cast<int>(lineWidth * grown), 1, 255);
  PaintSquare(picture, square, t * params.height / middle, lineWidth, level);
}

PackedDib Render(EffectContext& context) {
  CubistParams& params = ParametersOf<CubistParams>(context);
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.onSize = [&](int width, int height) {
    MakeSquares(params, *context.dialog, width, height);
    return true;
  };
  composer.onFillBitmap = [&](PackedDib fill) {
    const DibView picture(fill);
    if (!picture) return PackedDib();
    for (const CubistSquare& square : params.squares) PaintSquareOf(square, params, picture);
    return fill;
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  CubistParams params;
  return RunTest(context, &params, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int frames = ReadNumber(*context.dialog, kFrames);
    CubistParams params;
    if (!BeginRun(context, &params, Render, frames)) return false;
    // BeginRun has rendered the first frame.
    return AppendPhases<CubistParams>(context, Render, PlanEvenly(context, frames), frames,
                                      [](CubistParams& lane, double i) { lane.frame = static_cast<int>(i) + 1; });
  });
}

}  // namespace

const EffectDescriptor kCubist =
    EffectOf<kCubistPanel>("Hollow squares grow and shrink inside the letters.", Test, Build, kLoops);

}  // namespace glyphmotion
