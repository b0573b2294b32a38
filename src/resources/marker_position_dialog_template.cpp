// SPDX-License-Identifier: MIT
// Dialog 9996: the position of a marker on a fountain's bar.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;

constexpr std::array kControls = {
    Control(Kind::Label, -1, "&Position (0 to 255):", 7, 9, 68, panel::kLabelHeight),
    Control(Kind::NumberEdit, 100, "", 77, 7, 28, panel::kFieldHeight),
    Control(Kind::UpDown, 10100, "0,255,128", 105, 7, panel::kUpDownWidth, panel::kFieldHeight),
    Control(Kind::Trackbar, 101, "", 7, 26, 148, 16),
    Control(Kind::DefaultButton, 1, "OK", 51, 49, 50, 14),
    Control(Kind::Button, 2, "&Cancel", 105, 49, 50, 14),
};

}  // namespace

const DialogTemplate kMarkerPositionDialogTemplate = {9996, "Marker position", 162, 70, kControls};

}  // namespace glyphmotion
