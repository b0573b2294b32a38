// SPDX-License-Identifier: MIT
// Gumdrops: the letters are filled with round sweets that swell and shrink, each slowly circling its home.
#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>
#include <vector>

#include "effects/colour_blend.h"
#include "effects/effect_table.h"
#include "effects/gumdrop_image.h"
#include "effects/optional_colours.h"
#include "effects/phase_run.h"
#include "image/angles.h"
#include "platform/random.h"
#include "platform/run_state.h"
#include "resources/panel_gumdrops.h"

namespace glyphmotion {
namespace {

constexpr const Panel& kPanel = kGumdropsPanel;
constexpr const PanelRoles& kRoles = kPanel.roles;
constexpr int kFrames = kPanel.Option("Frames"), kSeed = kPanel.Option("Seed"), kDensity = kPanel.Option("Density"),
              kBevel = kPanel.Option("BevelEnable"), kSize = kPanel.Option("Size"), kDrift = kPanel.Option("Drift");
constexpr OptionalColourControls kColours = OptionalColoursOf(kPanel, "FillColor", "FillEnable");

struct GumdropRecord {
  int x, y;  // home, in percent of the bitmap's sides
  bool bevel;
  Colour colour;
  double size;      // place in the cycle of swelling and shrinking, 0 to 100; 50 is its largest
  double turn;      // place on the circle around home, 100 being a whole turn
  double sizeStep;  // a frame's, signed
};

// The drops of a run come in few sizes and strengths, each of them many times.
class DropImages {
 public:
  // Null when out of memory. Valid until the next call.
  const DropImage* Get(int diameter, int strength, bool bevel);

 private:
  static constexpr std::size_t kMostBytes = std::size_t{32} << 20;
  std::unordered_map<std::uint64_t, DropImage> images_;
  std::size_t bytes_ = 0;
};

struct GumdropParams {
  int frame = 0;      // BeginRun renders the first
  double step = 0.0;  // 100 / frames
  std::vector<GumdropRecord> drops;
  bool ready = false;
  int at = 0;  // the frame for which the drops are where they are
  DropImages images;
};

const DropImage* DropImages::Get(int diameter, int strength, bool bevel) {
  const std::uint64_t key =
      std::uint64_t{bevel} << 40 | static_cast<std::uint64_t>(strength) << 32 | static_cast<std::uint32_t>(diameter);
  const auto found = images_.find(key);
  if (found != images_.end()) return &found->second;
  DropImage image;
  if (!DrawGumdrop(diameter, strength, bevel, image)) return nullptr;
  if (bytes_ + image.weights.size() > kMostBytes) {
    images_.clear();
    bytes_ = 0;
  }
  bytes_ += image.weights.size();
  return &(images_[key] = std::move(image));
}

void MakeDrops(GumdropParams& params, const Dialog& dialog) {
  if (params.ready && params.at <= params.frame) return;
  SeedRandom(static_cast<std::uint32_t>(ReadNumber(dialog, kSeed)));
  const OptionalColours colours = ReadOptionalColours(dialog, kColours);
  params.step = 100.0 / ReadNumber(dialog, kFrames);
  GumdropRecord drop{};
  drop.bevel = ReadCheck(dialog, kBevel);
  params.drops.assign(static_cast<std::size_t>(ReadNumber(dialog, kDensity)), drop);
  for (GumdropRecord& each : params.drops) {
    each.x = NextRandom() % 100;
    each.y = NextRandom() % 100;
    each.colour = colours.Draw();
    each.size = NextRandom() % 100;
    each.sizeStep = NextRandom() & 1 ? params.step : -params.step;
  }
  params.ready = true;
  params.at = 0;
}

// At either end of its cycle a drop keeps its size once more and turns back.
void MoveDrop(GumdropRecord& drop, double step) {
  drop.size += drop.sizeStep;
  if (drop.size <= 0.0 || drop.size >= 100.0) {
    drop.sizeStep = -drop.sizeStep;
    drop.size += drop.sizeStep;
  }
  drop.turn += step;
}

void BlendDrop(const DibView& picture, int left, int top, const DropImage& image, Colour colour) {
  const int from = std::max(left, 0), to = std::min(left + image.side, picture.Width());
  if (from >= to) return;
  const int end = std::min(top + image.side, picture.Height());
  for (int y = std::max(top, 0); y < end && !EndRequested(); ++y) {
    const auto at = static_cast<std::size_t>(y - top) * static_cast<std::size_t>(image.side);
    BlendColourMasked(picture.Row(y) + 3 * static_cast<std::size_t>(from), image.weights.data() + at + (from - left),
                      to - from, colour);
  }
}

// False when the drop's image could not be made.
bool PaintDrop(const GumdropRecord& drop, int size, int drift, DropImages& images, const DibView& picture) {
  const int shorter = std::min(picture.Width(), picture.Height());
  const double grown = drop.size <= 50.0 ? drop.size : 50.0 - (drop.size - 50.0);
  const int diameter = static_cast<int>(2 * shorter * grown / 100) * size / 100;
  if (diameter <= 1) return true;
  const int strength = static_cast<int>(grown * 510 / 100) & 255;
  const DropImage* image = images.Get(diameter, strength, drop.bevel);
  if (!image) return false;
  int x = static_cast<int>(drop.x / 100.0 * picture.Width()), y = static_cast<int>(drop.y / 100.0 * picture.Height());
  if (drift > 0) {
    const int degrees = static_cast<int>(drop.turn * 360 / 100);
    const double angle = RadiansByDegree(degrees);
    const int radius = shorter * drift / 100;
    x += static_cast<int>(-radius * std::cos(angle));
    y += static_cast<int>(-radius * std::sin(angle));
  }
  BlendDrop(picture, x - image->side / 2, y - image->side / 2, *image, drop.colour);
  return true;
}

bool PaintGumdrops(GumdropParams& params, const FrameComposer& composer, const PackedDib& fill) {
  const DibView picture(fill);
  if (!picture) return false;
  const int size = composer.Number(kSize), drift = composer.Number(kDrift);
  for (const GumdropRecord& drop : params.drops) {
    if (EndRequested()) return false;
    if (!PaintDrop(drop, size, drift, params.images, picture)) return false;
  }
  return true;
}

PackedDib Render(EffectContext& context) {
  GumdropParams& params = ParametersOf<GumdropParams>(context);
  MakeDrops(params, *context.dialog);
  for (; params.at < params.frame && !EndRequested(); ++params.at) {
    for (GumdropRecord& drop : params.drops) MoveDrop(drop, params.step);
  }
  FrameComposer composer = MakeComposer(context, kRoles);
  PackedDib fill;  // made before the background
  composer.onSize = [&](int width, int height) {
    fill = composer.RenderMaterial(kRoles.fill, width, height);
    return fill && PaintGumdrops(params, composer, fill);
  };
  composer.makeFillBitmap = [&](int, int) { return std::move(fill); };
  return composer.Compose();
}

int Test(EffectContext& context) noexcept {
  GumdropParams params;
  return RunTest(context, &params, Render);
}

int Build(EffectContext& context) noexcept {
  return GuardBuild(context, [&] {
    const int frames = ReadNumber(*context.dialog, kFrames);
    GumdropParams params;
    if (!BeginRun(context, &params, Render, frames)) return false;
    // BeginRun has rendered the first frame.
    return AppendPhases<GumdropParams>(context, Render, PlanEvenly(context, frames), frames,
                                       [](GumdropParams& lane, double i) { lane.frame = static_cast<int>(i) + 1; });
  });
}

}  // namespace

const EffectDescriptor kGumdrops =
    EffectOf<kGumdropsPanel>("Round sweets swell and shrink inside the letters.", Test, Build, kLoops);

}  // namespace glyphmotion
