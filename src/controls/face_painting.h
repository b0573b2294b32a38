// SPDX-License-Identifier: MIT
// Painting the faces of drawn controls: fills, edges and one-colour masks in the desktop's colours. Everything is
// clipped to the request.
#pragma once

#include <span>
#include <string_view>

#include "controls/face_pixels.h"
#include "image/packed_dib.h"
#include "platform/dialog.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

constexpr Rect Shrunk(Rect rect, int by) { return {rect.left + by, rect.top + by, rect.right - by, rect.bottom - by}; }

void FillFace(const DrawRequest& request, Rect rect, Colour colour) noexcept;

/// A one-pixel frame just inside the rectangle: top and left in one colour, bottom and right in another.
void FrameFace(const DrawRequest& request, Rect rect, Colour topLeft, Colour bottomRight) noexcept;

/// A button's face in a colour with its two-pixel edge, raised or pressed.
void PaintButtonFace(const DrawRequest& request, Rect rect, bool pressed, Colour face) noexcept;

/// A frame of light and dark pixels by turns, which shows on any colour: where the keyboard is.
void DottedFrame(const DrawRequest& request, Rect rect) noexcept;

/// A bitmap's pixels at their own size from the rectangle's top left corner, cut to the rectangle. Nothing for an empty
/// view.
void PaintBitmap(const DrawRequest& request, Rect rect, const DibView& bitmap) noexcept;

enum class TextPlace { Left, Centre };

/// One line of UTF-8 in the dialogs' font, transparent, in the middle of the rectangle's height, cut to the rectangle.
/// Nothing when the machine has no font. Where the machine draws the text of faces itself, it does so when the face is
/// finished.
void PaintText(const DrawRequest& request, Rect rect, std::string_view text, Colour colour,
               TextPlace place = TextPlace::Left);
/// A button's caption, centred; the character after an & is underlined, unless the request hides that.
void PaintCaption(const DrawRequest& request, Rect rect, std::string_view caption, Colour colour);

/// How a mask is turned before it is painted; the steps apply in this order.
struct MaskTurn {
  bool transpose = false, mirror = false, flip = false;
};
/// Paints the pixels marked '#' in rows of equal length.
void PaintMask(const DrawRequest& request, int x, int y, std::span<const std::string_view> rows, MaskTurn turn,
               Colour colour) noexcept;

}  // namespace glyphmotion
