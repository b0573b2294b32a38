// SPDX-License-Identifier: MIT
#include "controls/fountain_face.h"

#include <algorithm>

#include "controls/face_painting.h"

namespace glyphmotion {
namespace {

constexpr int kHandleHalf = 5, kHandleTop = 4, kHandleBottom = 11;

int ColumnOf(const Rect& bar, std::uint32_t marker) {
  return bar.left + static_cast<int>(MarkerPosition(marker) / 255.0 * bar.Width());
}

// A flag on a pole: the colour, framed, and a stem down to the bar.
void PaintHandle(const DrawRequest& request, int x, Colour colour, bool enabled) {
  const Rect box = FountainHandle(x);
  const Colour edge = GetSystemColour(enabled ? SystemColour::DarkShadow : SystemColour::ButtonShadow);
  FrameFace(request, box, edge, edge);
  FillFace(request, Shrunk(box, 1), enabled ? colour & 0xFFFFFF : GetSystemColour(SystemColour::ButtonFace));
  for (int row = 0; row < 4; ++row) {
    FillFace(request, {x - 3 + row, box.bottom + row, x + 4 - row, box.bottom + row + 1}, edge);
  }
}

}  // namespace

Rect FountainBar(int width, int height) noexcept { return {8, 16, width - 8, height - 4}; }

Rect FountainHandle(int x) noexcept { return {x - kHandleHalf, kHandleTop, x + kHandleHalf + 1, kHandleBottom}; }

FountainHit HitFountain(const FountainSpec& fountain, int width, int height, int x, int y) noexcept {
  const Rect bar = FountainBar(width, height);
  const auto within = [&](const Rect& box) { return x >= box.left && x < box.right && y >= box.top && y < box.bottom; };
  for (int i = MarkerCountOf(fountain) - 1; i >= 0; --i) {
    if (within(FountainHandle(ColumnOf(bar, fountain.Markers[i])))) return {FountainHit::Handle, i, 0};
  }
  if (within(FountainHandle(bar.left))) return {FountainHit::Handle, kStartHandle, 0};
  if (within(FountainHandle(bar.right))) return {FountainHit::Handle, kEndHandle, 0};
  if (within(bar)) return {FountainHit::Bar, 0, (x - bar.left) * 255 / std::max(bar.Width(), 1)};
  return {};
}

void PaintFountainFace(const DrawRequest& request, const FountainSpec& fountain, const FountainLook& look) {
  const Rect bar = FountainBar(request.width, request.height);
  const Colour shadow = GetSystemColour(SystemColour::ButtonShadow), light = GetSystemColour(SystemColour::Highlight);
  FrameFace(request, Shrunk(bar, -1), shadow, light);
  if (look.enabled) PaintBitmap(request, bar, DibView(HandleOf(fountain.Preview)));
  PaintHandle(request, bar.left, fountain.StartColour, look.enabled);
  const bool looped = fountain.Flags & kFountainLooped;
  PaintHandle(request, bar.right, looped ? fountain.StartColour : fountain.EndColour, look.enabled && !looped);
  for (int i = 0; i < MarkerCountOf(fountain); ++i) {
    PaintHandle(request, ColumnOf(bar, fountain.Markers[i]), fountain.Markers[i], look.enabled);
  }
  if (!look.chosen) return;
  const int x = *look.chosen == kStartHandle ? bar.left
                : *look.chosen == kEndHandle ? bar.right
                                             : ColumnOf(bar, fountain.Markers[*look.chosen]);
  const Colour mark = GetSystemColour(SystemColour::Selection);
  FrameFace(request, Shrunk(FountainHandle(x), -1), mark, mark);
  FrameFace(request, FountainHandle(x), mark, mark);
}

}  // namespace glyphmotion
