// SPDX-License-Identifier: MIT
#include "effects/starfield.h"

#include <algorithm>

#include "effects/phase_run.h"
#include "platform/random.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kLengthPerSize = 20;

// A value below n. Narrow canvases give an n of zero or below it, where the remainder is C's.
int DrawBelow(int n) {
  const int value = NextRandom();
  return n ? value % n : 0;
}

struct StarClass {
  int count, base, speedFactor, opacity;
  int margin;  // the home column keeps clear of both edges by that much
};

void CreateClass(StarfieldState& field, const StarClass& kind, bool reverse) {
  for (int i = 0; i < kind.count; ++i) {
    StarRecord star;
    star.x = DrawBelow(field.width - std::max(2 * kind.margin, 1)) + kind.margin;
    star.y = DrawBelow(field.height);
    NextRandom();  // unused, but part of the sequence
    star.size = kind.base - DrawBelow(std::max(kind.base / 9, 1));
    star.speed = static_cast<double>(field.width) / field.frames;
    star.speedFactor = kind.speedFactor;
    star.opacity = kind.opacity;
    star.reverse = reverse;
    field.stars.push_back(star);
  }
}

// The weights along one row of a streak, head first.
struct StreakRow {
  int row;     // from the row of the head's upper half
  bool blunt;  // nothing at the head itself
  double strength;
};
constexpr StreakRow kSmallRows[] = {{0, false, 1.0}};
constexpr StreakRow kMiddleRows[] = {{0, false, 1.0}, {1, true, 0.5}};
constexpr StreakRow kBigRows[] = {{0, false, 1.0}, {1, false, 0.5}, {2, true, 0.25}, {-1, true, 0.25}};

std::span<const StreakRow> RowsOf(int size) {
  switch (size) {
    case 4:
      return kBigRows;
    case 2:
      return kMiddleRows;
    default:
      return kSmallRows;
  }
}

// Fades from the head to the tail, which lies behind the direction of travel and comes back in at the other edge.
void PaintStreakRow(const DibView& picture, const StarRecord& star, const StreakRow& row, Colour colour) {
  const int y = static_cast<int>(star.y) - star.size / 2 + row.row;
  if (y < 0 || y >= picture.Height()) return;
  const int width = picture.Width(), length = star.size * kLengthPerSize;
  int column = static_cast<int>(star.x);
  std::uint8_t* pixels = picture.Row(y);
  for (int j = 0; j < length; ++j) {
    const double fade = static_cast<double>(length - j) / length;
    const int a = row.blunt && j == 0 ? 0 : static_cast<int>(row.strength * star.opacity * fade) & 0xFF;
    if (a && column >= 0 && column < width) {
      std::uint8_t* p = pixels + 3 * static_cast<std::size_t>(column);
      p[0] = BlendChannel(p[0], BlueOf(colour), a);
      p[1] = BlendChannel(p[1], GreenOf(colour), a);
      p[2] = BlendChannel(p[2], RedOf(colour), a);
    }
    if (star.reverse) {
      if (--column < 0) column = width - 1;
    } else {
      if (++column >= width) column = 0;
    }
  }
}

// A step of more than a lap, as in a run of two frames, comes in again as often as it left.
void MoveStar(StarRecord& star, double width) {
  const double step = star.speedFactor * star.speed;
  if (star.reverse) {
    star.x += step;
    while (star.x >= width) star.x -= width;
  } else {
    star.x -= step;
    while (star.x < 0.0) star.x += width;
  }
}

}  // namespace

void CreateStars(StarfieldState& field, const Dialog& dialog, const StarfieldControls& controls, int width,
                 int height) {
  if (field.ready && field.at <= field.frame) return;
  field.stars.clear();
  field.at = 0;
  SeedRandom(static_cast<std::uint32_t>(ReadNumber(dialog, controls.seed)));
  const int density = ReadNumber(dialog, controls.density);
  const bool reverse = ReadDirection(dialog, controls.scroll) != 0;
  field.width = width;
  field.height = height;
  const StarClass kinds[] = {{density / 2, field.bigSize, 1, 255, 2},
                             {density * 3 / 4, field.midSize, 2, 160, 1},
                             {density, field.smallSize, 4, 128, 0}};
  field.stars.reserve(static_cast<std::size_t>(kinds[0].count + kinds[1].count + kinds[2].count));
  for (const StarClass& kind : kinds) CreateClass(field, kind, reverse);
  field.ready = true;
}

void PaintStars(StarfieldState& field, const DibView& picture, Colour colour) noexcept {
  for (StarRecord& star : field.stars) {
    if (EndRequested()) return;
    for (int at = field.at; at < field.frame; ++at) MoveStar(star, field.width);
    for (const StreakRow& row : RowsOf(star.size)) PaintStreakRow(picture, star, row, colour);
  }
  field.at = field.frame;
}

int TestStarfield(EffectContext& context, Renderer render) noexcept {
  StarfieldState field;
  return RunTest(context, &field, render);
}

int BuildStarfield(EffectContext& context, const StarfieldControls& controls, Renderer render) noexcept {
  return GuardBuild(context, [&] {
    StarfieldState field;
    const int frames = field.frames = ReadNumber(*context.dialog, controls.frames);
    if (!BeginRun(context, &field, render, frames)) return false;
    return AppendPhases<StarfieldState>(context, render, PlanEvenly(context, frames), frames,
                                        [frames](StarfieldState& lane, double i) {
                                          lane.frames = frames;
                                          lane.frame = static_cast<int>(i) + 1;
                                        });
  });
}

}  // namespace glyphmotion
