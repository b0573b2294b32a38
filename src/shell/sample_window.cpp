// SPDX-License-Identifier: MIT
#include "shell/sample_window.h"

#include <cstdio>

#include "controls/face_painting.h"
#include "controls/variables.h"
#include "image/packed_dib.h"
#include "platform/shell_ui.h"
#include "shell/main_controls.h"
#include "shell/sample.h"

namespace glyphmotion {
namespace {

constexpr Colour kLightGrey = MakeColour(192, 192, 192);
constexpr int kTextLeft = 4, kTextTop = 2;  // from the inside of the frame

void ShowSize(Dialog& dialog, const DibView& frame) {
  char text[48];
  std::snprintf(text, sizeof(text), "%d x %d pixels", frame.Width(), frame.Height());
  if (GetText(dialog, MainControl::SizeText) == text) return;
  SetText(dialog, MainControl::SizeText, text);
  Invalidate(dialog, MainControl::SizeText);
}

}  // namespace

void DrawSampleWindow(Dialog& dialog, const DrawRequest& request) {
  const Rect whole = WholeOf(request), inner = Shrunk(whole, 1);
  const Colour edge = GetSystemColour(SystemColour::ButtonShadow);
  if (inner.Width() < 1 || inner.Height() < 1) return FrameFace(request, whole, edge, edge);
  const PackedDib sample = RenderSample(dialog);
  const DibView frame(sample);
  if (!frame || frame.Bits() != 24) {
    FillFace(request, inner, GetSystemColour(SystemColour::Light3D));
  } else {
    const int left = inner.left + (inner.Width() - frame.Width()) / 2;
    const int top = inner.top + (inner.Height() - frame.Height()) / 2;
    const Rect place{left, top, left + frame.Width(), top + frame.Height()};
    FillFace(request, inner, SampleSurround(dialog));
    ShowSize(dialog, frame);
    PaintBitmap(request, place, frame);
    if (NumberVariable("SampleWindowKeyLine")) FrameFace(request, Shrunk(place, -1), kLightGrey, kLightGrey);
  }
  // Drawn last, over the edges of a larger picture.
  FrameFace(request, whole, edge, edge);
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
