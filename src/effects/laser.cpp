// SPDX-License-Identifier: MIT
// Laser: the text stands still while a thin upright beam of light sweeps once across the picture. The beam is seen only
// where it crosses the letters and, in another colour, their outline.
#include <algorithm>
#include <cstring>
#include <utility>

#include "effects/effect_table.h"
#include "effects/phase_run.h"
#include "image/filters.h"
#include "resources/panel_laser.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kLaserPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kScroll = kPanel.Option("Scroll"),
              kBeamSize = kPanel.Option("BeamSize"), kBeamColour = kPanel.Option("BeamColor"),
              kBeamDiffusion = kPanel.Option("BeamSoft");
constexpr int kBeamOutlineColour = kPanel.Option("BeamOutColor"), kBeamEnable = kPanel.Option("FillEnable"),
              kBeamOutlineEnable = kPanel.Option("OutEnable"), kFatten = kPanel.Option("Fatten");

constexpr int kLeastStrip = 60;  // columns, so that a blurred beam has room to spread
constexpr double kTestPhase = 0.585;
constexpr int kRightwards = 1;  // of the scroll picker

struct Sweep {
  double phase = 0.0;  // the beam's place as a fraction of the width
  PackedDib strip;     // the beam; the same in all frames of a run
};

// The beam's strength by row and column: `size` full columns, blurred, cut to those that are not blank.
PackedDib MakeStrip(int size, int diffusion, int height) {
  const int width = std::max(diffusion > 0 ? size + 1 + diffusion / 10 : size, kLeastStrip);
  PackedDib strip = BlankMask(width, height);
  {
    const DibView view(strip);
    if (!view) return {};
    for (int y = 0; y < height; ++y) std::memset(view.Row(y) + (width - size) / 2, 255, static_cast<std::size_t>(size));
  }
  if (diffusion >= 1) strip = Blur(strip, diffusion + 2);
  if (!strip) return {};
  PackedDib trimmed = TrimColumns(strip, kTrimLeft | kTrimRight);
  return trimmed ? std::move(trimmed) : std::move(strip);
}

// A beam crosses a dozen columns of a frame, so that pixels are read and blended one by one. What lies outside a mask
// counts as 255, so that the beam keeps its own strength there.
int LevelAt(const DibView& mask, int x, int y) { return static_cast<int>(mask.GetPixel(x, y) & 0xFF); }

bool LightFill(const FrameLayers& layers, const DibView& strip, double phase, Colour colour) {
  if (!strip) return false;
  const int left = static_cast<int>(layers.mask.Width() * phase) + layers.geometry.text.x;
  for (int y = 0; y < strip.Height(); ++y) {
    const std::uint8_t* beam = strip.Row(y);
    for (int k = 0; k < strip.Width(); ++k)
      BlendPixel(layers, left + k, y, colour, std::min<int>(beam[k], LevelAt(layers.mask, left + k, y)));
  }
  return true;
}

// Half the light of the strip's place (k, y) on the frame's (x, y), whose outline is one column to the right.
void LightNeighbour(const FrameLayers& layers, const DibView& strip, int k, int x, int y, Colour colour) {
  BlendPixel(layers, x, y, colour, std::min(LevelAt(strip, k, y), LevelAt(layers.mask, x + 1, y)) >> 1);
}

// Right, left, below, above; the first one that has no place in the strip ends the row of neighbours, so that the
// strip's right edge fattens nothing.
void Fatten(const FrameLayers& layers, const DibView& strip, int k, int x, int y, Colour colour) {
  if (k + 1 >= strip.Width()) return;
  LightNeighbour(layers, strip, k + 1, x + 1, y, colour);
  if (k <= 0) return;
  LightNeighbour(layers, strip, k - 1, x - 1, y, colour);
  if (y + 1 >= strip.Height()) return;
  LightNeighbour(layers, strip, k, x, y + 1, colour);
  if (y > 0) LightNeighbour(layers, strip, k, x, y - 1, colour);
}

// The mask's own width is what the phase multiplies here, so that this beam runs up to four columns ahead.
bool LightOutline(const FrameLayers& layers, const DibView& strip, double phase, Colour colour, bool fatten) {
  if (!strip) return false;
  const int left = static_cast<int>(layers.mask.Width() * phase) + layers.geometry.text.x - 1;
  const int rows = std::min({strip.Height(), layers.mask.Height(), layers.frame.Height()});
  const int columns = std::min(layers.mask.Width() - 1, layers.frame.Width());
  for (int y = 0; y < rows; ++y) {
    const std::uint8_t* beam = strip.Row(y);
    const std::uint8_t* outline = layers.mask.Row(y) + 1;
    for (int k = std::max(0, -left); k < strip.Width() && left + k < columns; ++k) {
      const int x = left + k;
      BlendPixel(layers, x, y, colour, std::min(beam[k], outline[x]));
      if (fatten) Fatten(layers, strip, k, x, y, colour);
    }
  }
  return true;
}

PackedDib Render(EffectContext& context) {
  Sweep& sweep = ParametersOf<Sweep>(context);
  const Dialog& dialog = *context.dialog;
  FrameComposer composer = MakeComposer(context, kRoles);
  const bool onOutline = composer.Check(kBeamOutlineEnable);
  const bool onFill = composer.Check(kBeamEnable) || !onOutline;  // a beam is always shown
  composer.onSize = [&](int, int height) {
    if (DibView(sweep.strip).Height() != height)
      sweep.strip = MakeStrip(composer.Number(kBeamSize), composer.Number(kBeamDiffusion), height);
    return static_cast<bool>(sweep.strip);
  };
  if (onFill) {
    composer.afterFill = [&](const FrameLayers& layers) {
      return LightFill(layers, DibView(sweep.strip), sweep.phase, ReadColour(dialog, kBeamColour));
    };
  }
  if (onOutline) {
    composer.afterOutline = [&](const FrameLayers& layers) {
      return LightOutline(layers, DibView(sweep.strip), sweep.phase, ReadColour(dialog, kBeamOutlineColour),
                          composer.Check(kFatten));
    };
  }
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  Sweep sweep{.phase = kTestPhase, .strip = {}};
  return RunTest(context, &sweep, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const auto [delay, pause] = ReadPace(dialog);
    const int frames = ReadNumber(dialog, kFrames);
    const bool rightwards = ReadDirection(dialog, kScroll) == kRightwards;
    Sweep sweep;
    if (!BeginRun(context, &sweep, Render, frames)) return false;
    std::vector<PhaseFrame> plan;
    for (int i = 0; i < frames; ++i) {
      // Leftwards the sweep runs one step further out than its mirror image, to a place left of the frame.
      const double phase = rightwards ? static_cast<double>(i) / frames : 1.0 - static_cast<double>(i + 2) / frames;
      plan.push_back({phase, i == frames - 1 ? delay + pause : delay, i, {}});
    }
    return AppendPhases<Sweep>(context, Render, plan, frames, [](Sweep& lane, double phase) { lane.phase = phase; });
  });
}

}  // namespace

const EffectDescriptor kLaser = EffectOf<kLaserPanel>("A beam lights the letters as it sweeps across.", Test, Build);

}  // namespace glyphmotion
