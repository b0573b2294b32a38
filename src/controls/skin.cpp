// SPDX-License-Identifier: MIT
#include "controls/skin.h"

#include <algorithm>
#include <cmath>

#include "controls/face_painting.h"
#include "controls/soft_shapes.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"

namespace glyphmotion {
namespace {

constexpr double kRadius = 5;

struct Skin {
  bool used = false;
};

Colour FaceColour() { return GetSystemColour(SystemColour::ButtonFace); }
Colour Mixed(Colour with, int share) { return Blend(FaceColour(), with, share); }

struct ButtonLook {
  Shade face;
  Colour edge;
};

ButtonLook LookOf(const DrawRequest& request, bool enabled) {
  const Colour light = GetSystemColour(SystemColour::Highlight), shadow = GetSystemColour(SystemColour::ButtonShadow);
  if (!enabled) return {{Mixed(light, 90), Mixed(shadow, 16)}, Mixed(shadow, 120)};
  if (request.pressed) return {{Mixed(kAccent, 110), Mixed(kAccent, 60)}, Blend(kAccent, 0, 70)};
  if (request.hot) return {{Mixed(light, 235), Mixed(kAccent, 80)}, kAccent};
  return {{Mixed(light, 215), Mixed(shadow, 70)}, Blend(shadow, 0, 40)};
}

void PaintButton(Dialog& dialog, int id, const DrawRequest& request) {
  const bool enabled = IsEnabled(dialog, id);
  const double s = request.scale;
  const ButtonLook look = LookOf(request, enabled);
  const SoftRect whole{0, 0, static_cast<double>(request.width), static_cast<double>(request.height)};
  // A light line below makes the face look embossed; then the face, its highlight and its edge.
  FillRounded(request, whole, kRadius * s, Plain(GetSystemColour(SystemColour::Highlight), 0.55));
  const SoftRect face{0, 0, whole.right, whole.bottom - s};
  FillRounded(request, face, kRadius * s, look.face);
  if (enabled && !request.pressed) {
    StrokeRounded(request, Shrunk(face, s), (kRadius - 1) * s, s, Plain(GetSystemColour(SystemColour::Highlight), 0.6));
  }
  if (enabled && request.isDefault) {
    StrokeRounded(request, Shrunk(face, s), (kRadius - 1) * s, 1.5 * s, Plain(kAccent, 0.85));
  }
  StrokeRounded(request, face, kRadius * s, s, Plain(request.isDefault && enabled ? Blend(kAccent, 0, 60) : look.edge));
  const int down = request.pressed ? static_cast<int>(std::lround(s)) : 0;
  const Rect text{down, down, request.width + down, request.height - static_cast<int>(std::lround(s)) + down};
  const std::string caption = GetText(dialog, id);
  if (!enabled) {
    const int one = std::max(static_cast<int>(std::lround(s)), 1);
    PaintCaption(request, {text.left + one, text.top + one, text.right + one, text.bottom + one}, caption,
                 GetSystemColour(SystemColour::Highlight));
  }
  PaintCaption(request, text, caption,
               enabled ? GetSystemColour(SystemColour::ButtonText) : GetSystemColour(SystemColour::ButtonShadow));
  if (enabled && request.focused) {
    DottedFrame(request, Shrunk({0, 0, request.width, static_cast<int>(face.bottom)}, static_cast<int>(4 * s)));
  }
}

std::int64_t ButtonProcedure(Dialog& dialog, int id, const Message& message) {
  if (message.number == kMessagePaint) PaintButton(dialog, id, *PointerOf<const DrawRequest>(message.b));
  return 0;
}

void SkinButtons(Dialog& dialog) {
  for (const int id : Children(dialog)) {
    const ControlKind kind = KindOf(dialog, id);
    if (id <= 0 || (kind != ControlKind::Button && kind != ControlKind::DefaultButton)) continue;
    SetControlProcedure(dialog, id, ButtonProcedure, nullptr);
    PaintInScreenPixels(dialog, id);
  }
}

void PaintBackground(const DrawRequest& request) {
  const SoftRect whole{0, 0, static_cast<double>(request.width), static_cast<double>(request.height)};
  FillRounded(request, whole, 0, {Mixed(GetSystemColour(SystemColour::Highlight), 190), Mixed(kAccent, 52)});
}

}  // namespace

void UseSkin(bool use) { CurrentRun().Member<Skin>().used = use && !IsHighContrast(); }

bool HandleSkin(Dialog& dialog, const Message& message) {
  if (!CurrentRun().Member<Skin>().used) return false;
  if (message.number == kMessageInitialise) SkinButtons(dialog);
  if (message.number != kMessagePaintBackground) return false;
  PaintBackground(*PointerOf<const DrawRequest>(message.b));
  return true;
}

}  // namespace glyphmotion
