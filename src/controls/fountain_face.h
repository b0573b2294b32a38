// SPDX-License-Identifier: MIT
// The face of a fountain button: where its bar and its handles are, and how they look.
#pragma once

#include <optional>

#include "image/surface.h"
#include "materials/fountain.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The handles at the ends; others have the index of their marker.
constexpr int kStartHandle = -1, kEndHandle = -2;

/// The part of the control at a position.
struct FountainHit {
  enum Part { Nowhere, Handle, Bar } part = Nowhere;
  int index = 0;     ///< of a handle: a marker's index, kStartHandle or kEndHandle
  int position = 0;  ///< of the bar: 0 to 255
};

/// In a control of this size: the bar, and the handle of a colour at column x.
Rect FountainBar(int width, int height) noexcept;
Rect FountainHandle(int x) noexcept;
/// What lies at (x, y): markers before the two handles, the last marker first.
FountainHit HitFountain(const FountainSpec& fountain, int width, int height, int x, int y) noexcept;

struct FountainLook {
  bool enabled = true;
  std::optional<int> chosen;  ///< the handle that keys act on, of a control with the keyboard
};

/// Paints the face. The bar is the fountain's preview.
void PaintFountainFace(const DrawRequest& request, const FountainSpec& fountain, const FountainLook& look);

}  // namespace glyphmotion
