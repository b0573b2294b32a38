// SPDX-License-Identifier: MIT
// Paints the faces of drawn controls: fills, edges and one-colour masks in the desktop's colours. Everything is clipped
// to the request.
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

/// The focus frame: alternating light and dark pixels, visible on any colour.
void DottedFrame(const DrawRequest& request, Rect rect) noexcept;

/// Draws a bitmap unscaled at the rectangle's top left corner, clipped to the rectangle. Does nothing for an empty
/// view.
void PaintBitmap(const DrawRequest& request, Rect rect, const DibView& bitmap) noexcept;

enum class TextPlace { Left, Centre };

/// One line of UTF-8 in the dialogs' font, with a transparent background, vertically centred in and clipped to the
/// rectangle. Draws nothing when no font is installed. If the system draws the text of faces, it does so when the face
/// is finished.
void PaintText(const DrawRequest& request, Rect rect, std::string_view text, Colour colour,
               TextPlace place = TextPlace::Left);
/// A button's caption, centred; the character after an & is underlined, unless the request hides mnemonics.
void PaintCaption(const DrawRequest& request, Rect rect, std::string_view caption, Colour colour);

/// The transformation of a mask before it is painted; the steps apply in this order.
struct MaskTurn {
  bool transpose = false, mirror = false, flip = false;
};
/// Paints the pixels marked '#' in rows of equal length.
void PaintMask(const DrawRequest& request, int x, int y, std::span<const std::string_view> rows, MaskTurn turn,
               Colour colour) noexcept;

}  // namespace glyphmotion
