// SPDX-License-Identifier: MIT
#include "controls/face_painting.h"

#include <algorithm>
#include <utility>

#include "platform/encoding.h"
#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

void PaintPixel(const DrawRequest& request, int x, int y, Colour colour) {
  if (IsOnFace(request, x, y)) PutColour(FacePixel(request, x, y), colour);
}

const FontRequest& DialogFont() {
  static const FontRequest font{"MS Sans Serif", 13, false, false};
  return font;
}

void BlendPixel(const DrawRequest& request, const Rect& clip, int x, int y, Colour colour, int alpha) {
  if (x < clip.left || y < clip.top || x >= clip.right || y >= clip.bottom || !IsOnFace(request, x, y)) return;
  BlendColour(FacePixel(request, x, y), colour, alpha);
}

/// Calls `put` for each character with its left edge. A character's box has margins of em/6 on both sides; a space is
/// em/3 wide. Returns the end of the line.
template <typename Put>
double WalkLine(std::string_view text, Put put) {
  GlyphBox blank, box;
  double x = 0;
  if (!MeasureGlyph(DialogFont(), U' ', blank)) return x;
  for (const char32_t code : DecodeText(text)) {
    if (code == U' ' || !MeasureGlyph(DialogFont(), code, box)) {
      x += blank.width;
    } else {
      put(code, static_cast<int>(x - blank.width / 2));
      x += box.width - blank.width;
    }
  }
  return x;
}

/// In pixels.
int TextWidth(std::string_view text) {
  return static_cast<int>(WalkLine(text, [](char32_t, int) {}) + 0.5);
}

/// Rows of glyphs from a left edge, vertically centred in the rectangle.
void PaintLine(const DrawRequest& request, Rect rect, std::string_view text, int left, Colour colour) {
  const int top = rect.top + (rect.Height() - MeasureFont(DialogFont()).height) / 2;
  WalkLine(text, [&](char32_t code, int x) {
    GlyphBitmap glyph;
    if (!RenderGlyph(DialogFont(), code, true, glyph)) return;
    for (int i = 0; i < glyph.width * glyph.height; ++i) {
      const int alpha = glyph.coverage[static_cast<std::size_t>(i)];
      if (alpha) BlendPixel(request, rect, left + x + i % glyph.width, top + i / glyph.width, colour, alpha);
    }
  });
}

bool LeaveToMachine(const DrawRequest& request, Rect rect, FaceText text) {
  if (!request.texts) return false;
  text.place = {rect.left, rect.top, rect.right, rect.bottom};
  request.texts->push_back(std::move(text));
  return true;
}

}  // namespace

void FillFace(const DrawRequest& request, Rect rect, Colour colour) noexcept {
  const int right = std::min(rect.right, request.width), bottom = std::min(rect.bottom, request.height);
  for (int y = std::max(rect.top, 0); y < bottom; ++y) {
    for (int x = std::max(rect.left, 0); x < right; ++x) PaintPixel(request, x, y, colour);
  }
}

void FrameFace(const DrawRequest& request, Rect rect, Colour topLeft, Colour bottomRight) noexcept {
  if (rect.Width() < 1 || rect.Height() < 1) return;
  FillFace(request, {rect.left, rect.top, rect.right, rect.top + 1}, topLeft);
  FillFace(request, {rect.left, rect.top, rect.left + 1, rect.bottom}, topLeft);
  FillFace(request, {rect.left, rect.bottom - 1, rect.right, rect.bottom}, bottomRight);
  FillFace(request, {rect.right - 1, rect.top, rect.right, rect.bottom}, bottomRight);
}

void PaintButtonFace(const DrawRequest& request, Rect rect, bool pressed, Colour face) noexcept {
  const Colour light = GetSystemColour(SystemColour::Highlight);
  const Colour shadow = GetSystemColour(SystemColour::ButtonShadow), dark = GetSystemColour(SystemColour::DarkShadow);
  const Colour soft = GetSystemColour(SystemColour::Light3D);
  FillFace(request, rect, face);
  FrameFace(request, rect, pressed ? dark : light, pressed ? light : dark);
  FrameFace(request, Shrunk(rect, 1), pressed ? shadow : soft, pressed ? soft : shadow);
}

void DottedFrame(const DrawRequest& request, Rect rect) noexcept {
  const Colour colours[] = {GetSystemColour(SystemColour::Highlight), GetSystemColour(SystemColour::ButtonText)};
  const auto dot = [&](int x, int y) { PaintPixel(request, x, y, colours[(x ^ y) & 1]); };
  for (int x = rect.left; x < rect.right; ++x) {
    dot(x, rect.top);
    dot(x, rect.bottom - 1);
  }
  for (int y = rect.top; y < rect.bottom; ++y) {
    dot(rect.left, y);
    dot(rect.right - 1, y);
  }
}

void PaintBitmap(const DrawRequest& request, Rect rect, const DibView& bitmap) noexcept {
  if (!bitmap) return;
  const int width = std::min(rect.Width(), bitmap.Width()), height = std::min(rect.Height(), bitmap.Height());
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) PaintPixel(request, rect.left + x, rect.top + y, bitmap.GetPixel(x, y));
  }
}

void PaintText(const DrawRequest& request, Rect rect, std::string_view text, Colour colour, TextPlace place) {
  if (LeaveToMachine(request, rect, {{}, std::string(text), colour, place == TextPlace::Centre, false})) return;
  const int left = place == TextPlace::Left ? rect.left : rect.left + (rect.Width() - TextWidth(text)) / 2;
  PaintLine(request, rect, text, left, colour);
}

void PaintCaption(const DrawRequest& request, Rect rect, std::string_view caption, Colour colour) {
  if (LeaveToMachine(request, rect, {{}, std::string(caption), colour, true, true})) return;
  std::string text(caption);
  const std::size_t mark = text.find('&');
  if (mark != std::string::npos) text.erase(mark, 1);
  const int left = rect.left + (rect.Width() - TextWidth(text)) / 2;
  PaintLine(request, rect, text, left, colour);
  if (mark >= text.size() || request.hidesMnemonics) return;
  const std::string_view line = text;
  const int from = left + TextWidth(line.substr(0, mark)), to = left + TextWidth(line.substr(0, mark + 1));
  const int base = rect.top + (rect.Height() + MeasureFont(DialogFont()).height) / 2 - 1;
  FillFace(request, {from, base, to, base + 1}, colour);
}

void PaintMask(const DrawRequest& request, int x, int y, std::span<const std::string_view> rows, MaskTurn turn,
               Colour colour) noexcept {
  const auto height = static_cast<int>(rows.size()), width = height ? static_cast<int>(rows[0].size()) : 0;
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      if (rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] != '#') continue;
      int across = turn.transpose ? row : column, down = turn.transpose ? column : row;
      if (turn.mirror) across = (turn.transpose ? height : width) - 1 - across;
      if (turn.flip) down = (turn.transpose ? width : height) - 1 - down;
      PaintPixel(request, x + across, y + down, colour);
    }
  }
}

}  // namespace glyphmotion
