// SPDX-License-Identifier: MIT
#include "shell/sample_window.h"

#include <algorithm>
#include <cstdio>

#include "controls/face_painting.h"
#include "controls/variables.h"
#include "image/packed_dib.h"
#include "platform/shell_ui.h"
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
  const Rect whole = WholeOf(request);
  const Colour shadow = GetSystemColour(SystemColour::ButtonShadow);
  FillFace(request, whole, GetSystemColour(SystemColour::ButtonFace));
  FrameFace(request, whole, shadow, shadow);
  const Rect inside{1 + kTextLeft, 1 + kTextTop, request.width - 1 - kTextLeft, request.height - 1 - kTextTop};
  PaintText(request, inside, GetText(dialog, MainControl::SizeText), GetSystemColour(SystemColour::ButtonText));
}

}  // namespace glyphmotion
