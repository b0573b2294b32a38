// SPDX-License-Identifier: MIT
// Dialog 9997: the library of fountains at the left, the buttons at the right.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;

constexpr int kWidth = 250, kHeight = 172, kButtonLeft = 193, kPitch = 18;

constexpr ControlTemplate Button(int y, int id, const char* caption, Kind kind = Kind::Button) {
  return Control(kind, id, caption, kButtonLeft, y, 50, 14);
}

constexpr std::array kControls = {
    Control(Kind::Label, -1, "&Fountains:", 7, 7, 60, panel::kLabelHeight),
    Control(Kind::PictureList, 101, "", 7, 18, 179, kHeight - 7 - 18),
    Button(18, 1, "OK", Kind::DefaultButton),
    Button(18 + kPitch, 2, "&Cancel"),
    Button(18 + 2 * kPitch, 9, "&Help"),
    Button(18 + 4 * kPitch, 102, "&Use"),
    Button(18 + 5 * kPitch, 103, "Move u&p"),
    Button(18 + 6 * kPitch, 104, "Move dow&n"),
    Button(18 + 7 * kPitch, 105, "&Delete"),
};

}  // namespace

const DialogTemplate kFountainLibraryDialogTemplate = {9997, "Fountain library", kWidth, kHeight, kControls};

}  // namespace glyphmotion
