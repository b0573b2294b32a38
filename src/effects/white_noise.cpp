// SPDX-License-Identifier: MIT
// White Noise: the letters show the snow of a television picture, wide grains between a light and a dark fill, with a
// bright bar of interference rolling through it. The grain is new in every frame.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "effects/effect_table.h"
#include "image/angles.h"
#include "platform/random.h"
#include "platform/run_state.h"
#include "resources/panel_white_noise.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kWhiteNoisePanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kSeed = kPanel.Option("Seed"), kDarkFill = kRoles.material2,
              kPixelSize = kPanel.Option("Size"), kInterference = kPanel.Option("Interference"),
              kRandomDelay = kPanel.Option("RandomDelay");

constexpr double kTestPhase = 0.25;

struct Picture {
  double phase = kTestPhase;  // the interference bar's place as a fraction of the height
};

// A Poisson count scaled to steps of 20, so that a mean of 6.4 centres on 128, less 64 and never below 0.
constexpr double kMean = 6.4;
constexpr int kCountStep = 20, kPedestal = 64;
constexpr std::uint8_t LevelOfCount(int count) {
  return static_cast<std::uint8_t>(std::max(0, std::min(255, kCountStep * std::min(count, 255)) - kPedestal));
}

struct Levels {
  int lowest = 255, highest = 0;
};

// Fills the mask with noise, the picture's bottom row first, and returns its extremes. Counts by Knuth's method: how
// many random factors it takes to bring a product down to exp(-mean). The generator's state is held here meanwhile; the
// sequence is that of NextRandom.
Levels FillWithNoise(const DibView& mask) {
  const double limit = std::exp(-kMean);
  std::uint32_t state = RandomState();
  const auto factor = [&state] {
    state = StateAfter(state);
    return RandomOf(state) / 32767.0;
  };
  Levels levels;
  for (int r = 0; r < mask.Height() && !EndRequested(); ++r) {
    std::uint8_t* row = mask.StoredRow(r);
    int lowest = levels.lowest, highest = levels.highest;
    for (int x = 0; x < mask.Width(); ++x) {
      double product = factor();
      if (product == 0.0) product = 1.0;
      int count = 0;
      for (; product > limit; ++count) product *= factor();
      row[x] = LevelOfCount(count);
      lowest = std::min<int>(lowest, row[x]);
      highest = std::max<int>(highest, row[x]);
    }
    levels = {lowest, highest};
  }
  SeedRandom(state);
  return levels;
}

// What becomes of a level when the noise is stretched. The divisor is what the highest level leaves of 255, and values
// beyond a byte wrap round: the harsh look of the grain comes of it. Levels end at 191, so that something is left.
std::array<std::uint8_t, 256> StretchTable(Levels levels) {
  std::array<std::uint8_t, 256> table{};
  for (int v = levels.lowest; v <= levels.highest; ++v) {
    const int rest = 255 - (levels.highest - levels.lowest);
    table[static_cast<std::size_t>(v)] = static_cast<std::uint8_t>((v - levels.lowest) * 255 / rest);
  }
  return table;
}

// What interference adds to each row: half a sine wave that begins at the phase's row and wraps round at the bottom.
std::vector<int> MakeBand(int height, int interference, double phase) {
  std::vector<int> band(static_cast<std::size_t>(height), 0);
  if (interference <= 0) return band;
  int row = static_cast<int>(height * phase);
  for (int i = 0; i < height; ++i, ++row) {
    if (row >= height) row = 0;
    const double angle = Radians(static_cast<double>(i) / height * 180);
    band[static_cast<std::size_t>(row)] = static_cast<int>(std::sin(angle) * interference);
  }
  return band;
}

// One row of cells: each takes the colours and the level of its first pixel.
void PaintCells(const std::uint8_t* light, const std::uint8_t* dark, const std::uint8_t* noise,
                const std::uint8_t* levelOfNoise, int width, int cellWidth, std::uint8_t* out) {
  for (int x = 0; x < width; x += cellWidth) {
    const int level = levelOfNoise[noise[x]];
    const std::uint8_t *a = light + 3 * static_cast<std::ptrdiff_t>(x), *b = dark + 3 * static_cast<std::ptrdiff_t>(x);
    const std::uint8_t colour[3] = {BlendChannel(b[0], a[0], level), BlendChannel(b[1], a[1], level),
                                    BlendChannel(b[2], a[2], level)};
    for (int end = std::min(cellWidth, width - x); end > 0; --end, out += 3) std::memcpy(out, colour, 3);
  }
}

struct Grain {
  int pixelSize, interference;
  double phase;
};

// Bitmap of the light and dark materials' mixture.
PackedDib PaintNoiseFill(const PackedDib& light, const PackedDib& dark, int width, int height, const Grain& grain) {
  PackedDib result = BlankDib(width, height, nullptr, 24);
  const PackedDib noise = BlankMask(width, height);
  {
    const DibView to(result), mask(noise), a(light), b(dark);
    if (!to || !mask || !a || !b) return {};
    // A grain is half as wide again as it is high, and never square.
    const int cellWidth = std::max(2, grain.pixelSize * 3 / 2);
    const auto stretched = StretchTable(FillWithNoise(mask));
    const std::vector<int> band = MakeBand(height, grain.interference, grain.phase);
    for (int y = 0; y < height; y += grain.pixelSize) {
      if (EndRequested()) return {};
      std::uint8_t levelOfNoise[256];
      for (std::size_t v = 0; v < 256; ++v)
        levelOfNoise[v] = static_cast<std::uint8_t>(std::min(255, stretched[v] + band[static_cast<std::size_t>(y)]));
      PaintCells(a.Row(y), b.Row(y), mask.Row(y), levelOfNoise, width, cellWidth, to.Row(y));
      for (int i = 1; i < grain.pixelSize && y + i < height; ++i) std::memcpy(to.Row(y + i), to.Row(y), to.Stride());
    }
  }
  return result;
}

PackedDib Render(EffectContext& context) {
  const double phase = ParametersOf<Picture>(context).phase;
  FrameComposer composer = MakeComposer(context, kRoles);
  composer.makeFillBitmap = [&](int width, int height) {
    // A texture reseeds the generator, so the noise follows from its seed.
    const PackedDib light = composer.RenderMaterial(kRoles.fill, width, height);
    const PackedDib dark = composer.RenderMaterial(kDarkFill, width, height);
    return PaintNoiseFill(light, dark, width, height,
                          {composer.Number(kPixelSize), composer.Number(kInterference), phase});
  };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  SeedRandom(static_cast<std::uint32_t>(ReadNumber(*context.dialog, kSeed)));
  Picture picture;
  return RunTest(context, &picture, Render);
}

// A random delay is 1 where the first value asks for less, else a second value, which may be 0.
int RandomDelay(int delay) {
  if (NextRandom() % delay < 1) return 1;
  return NextRandom() % delay;
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const Dialog& dialog = *context.dialog;
    const int delay = ReadPace(dialog).delay, frames = ReadNumber(dialog, kFrames);
    const bool randomDelay = ReadCheck(dialog, kRandomDelay);
    // Once a run: the frames go on with the sequence, the one that is thrown away included.
    SeedRandom(static_cast<std::uint32_t>(ReadNumber(dialog, kSeed)));
    Picture picture;
    if (!BeginRun(context, &picture, Render, frames)) return false;
    for (int i = 0; i < frames; ++i) {
      picture.phase = static_cast<double>(i) / frames;
      PackedDib frame = Render(context);
      if (!frame) return false;
      const int shown = randomDelay ? RandomDelay(delay) : delay;
      if (!AppendWithProgress(context, std::move(frame), shown, i, frames)) return false;
    }
    return true;
  });
}

}  // namespace

const EffectDescriptor kWhiteNoise =
    EffectOf<kWhiteNoisePanel>("Snowy television between two fills.", Test, Build, kLoops, {"No signal"});

}  // namespace glyphmotion
