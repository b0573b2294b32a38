// SPDX-License-Identifier: MIT
#include "shell/sample_window.h"

#include <algorithm>
#include <cstdio>

#include "controls/variables.h"
#include "image/packed_dib.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"
#include "shell/main_dialog.h"
#include "shell/sample.h"

namespace glyphmotion {
namespace {

constexpr Colour kLightGrey = MakeColour(192, 192, 192);
constexpr int kTextLeft = 4, kTextTop = 2;  // from the inside of the frame

// Everything is cut to this part of the request.
struct Canvas {
  const DrawRequest& request;
  Rect clip;

  std::uint8_t* At(int x, int y) const { return request.pixels + request.stride * y + std::ptrdiff_t{3} * x; }

  void Fill(Rect rect, Colour colour) const {
    rect = Cut(rect);
    for (int y = rect.top; y < rect.bottom; ++y) {
      std::uint8_t* p = At(rect.left, y);
      for (int x = rect.left; x < rect.right; ++x, p += 3) Put(p, colour);
    }
  }

  /// The outermost pixels of the rectangle.
  void Frame(Rect rect, Colour colour) const {
    Fill({rect.left, rect.top, rect.right, rect.top + 1}, colour);
    Fill({rect.left, rect.bottom - 1, rect.right, rect.bottom}, colour);
    Fill({rect.left, rect.top, rect.left + 1, rect.bottom}, colour);
    Fill({rect.right - 1, rect.top, rect.right, rect.bottom}, colour);
  }

  void Draw(const DibView& picture, int left, int top) const {
    const Rect rect = Cut({left, top, left + picture.Width(), top + picture.Height()});
    for (int y = rect.top; y < rect.bottom; ++y) {
      const std::uint8_t* row = picture.Row(y - top) + std::ptrdiff_t{3} * (rect.left - left);
      std::copy_n(row, std::ptrdiff_t{3} * std::max(rect.Width(), 0), At(rect.left, y));
    }
  }

  void Blend(int x, int y, Colour colour, int a) const {
    if (x < clip.left || x >= clip.right || y < clip.top || y >= clip.bottom) return;
    std::uint8_t* p = At(x, y);
    Put(p, glyphmotion::Blend(MakeColour(p[2], p[1], p[0]), colour, a));
  }

 private:
  Rect Cut(Rect rect) const {
    return {std::max(rect.left, clip.left), std::max(rect.top, clip.top), std::min(rect.right, clip.right),
            std::min(rect.bottom, clip.bottom)};
  }
  static void Put(std::uint8_t* p, Colour colour) {
    p[0] = static_cast<std::uint8_t>(BlueOf(colour));
    p[1] = static_cast<std::uint8_t>(GreenOf(colour));
    p[2] = static_cast<std::uint8_t>(RedOf(colour));
  }
};

Rect WholeOf(const DrawRequest& request) { return {0, 0, request.width, request.height}; }
Rect Inside(Rect rect) { return {rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1}; }

void ShowSize(Dialog& dialog, const DibView& frame) {
  char text[48];
  std::snprintf(text, sizeof(text), "%d x %d pixels", frame.Width(), frame.Height());
  if (GetText(dialog, MainControl::SizeText) == text) return;
  SetText(dialog, MainControl::SizeText, text);
  Invalidate(dialog, MainControl::SizeText);
}

// One line in the dialog's font. A character's box holds margins of em/6 on both sides; a blank is em/3 wide.
void DrawLine(const Canvas& canvas, const std::string& text, int left, int height, Colour colour) {
  const FontRequest font{"MS Sans Serif", 13, false, false};
  GlyphBox blank;
  if (!MeasureGlyph(font, U' ', blank)) return;
  const int top = canvas.clip.top + (canvas.clip.Height() - height) / 2;
  double x = left;
  for (const char character : text) {
    GlyphBitmap glyph;
    GlyphBox box;
    const char32_t code = static_cast<unsigned char>(character);
    if (code == U' ' || !MeasureGlyph(font, code, box) || !RenderGlyph(font, code, true, glyph)) {
      x += blank.width;
      continue;
    }
    const int boxLeft = static_cast<int>(x - blank.width / 2);
    for (int i = 0; i < glyph.width * glyph.height; ++i) {
      const int a = glyph.coverage[static_cast<std::size_t>(i)];
      if (a) canvas.Blend(boxLeft + i % glyph.width, top + i / glyph.width, colour, a);
    }
    x += box.width - blank.width;
  }
}

}  // namespace

void DrawSampleWindow(Dialog& dialog, const DrawRequest& request) {
  Canvas canvas{request, WholeOf(request)};
  canvas.Frame(canvas.clip, GetSystemColour(SystemColour::ButtonShadow));
  const Rect inner = canvas.clip = Inside(canvas.clip);
  if (inner.Width() < 1 || inner.Height() < 1) return;
  const PackedDib sample = RenderSample(dialog, inner.Width(), inner.Height());
  const DibView frame(sample);
  if (!frame || frame.Bits() != 24) {
    canvas.Fill(inner, GetSystemColour(SystemColour::Light3D));
    return;
  }
  const int left = inner.left + (inner.Width() - frame.Width()) / 2;
  const int top = inner.top + (inner.Height() - frame.Height()) / 2;
  canvas.Fill(inner, SampleSurround(dialog));
  ShowSize(dialog, frame);
  canvas.Draw(frame, left, top);
  if (NumberVariable("SampleWindowKeyLine")) {
    canvas.Frame({left - 1, top - 1, left + frame.Width() + 1, top + frame.Height() + 1}, kLightGrey);
  }
}

void DrawSizeText(const Dialog& dialog, const DrawRequest& request) {
  Canvas canvas{request, WholeOf(request)};
  canvas.Fill(canvas.clip, GetSystemColour(SystemColour::ButtonFace));
  canvas.Frame(canvas.clip, GetSystemColour(SystemColour::ButtonShadow));
  canvas.clip = {1 + kTextLeft, 1 + kTextTop, request.width - 1 - kTextLeft, request.height - 1 - kTextTop};
  const int height = MeasureFont({"MS Sans Serif", 13, false, false}).height;
  DrawLine(canvas, GetText(dialog, MainControl::SizeText), canvas.clip.left, height,
           GetSystemColour(SystemColour::ButtonText));
}

}  // namespace glyphmotion
