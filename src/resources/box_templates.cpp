// SPDX-License-Identifier: MIT
#include "resources/box_templates.h"

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace {

using namespace BoxControl;
using panel::Control;
using Kind = ControlKind;

constexpr int kButtonWidth = 55, kButtonHeight = 14;

constexpr ControlTemplate PushButton(Kind kind, int id, const char* caption, int x, int y) {
  return Control(kind, id, caption, x, y, kButtonWidth, kButtonHeight);
}

constexpr ControlTemplate kMessageControls[] = {
    Control(Kind::OwnerDrawn, Picture, "", 9, 9, 21, 20),
    Control(Kind::Paragraph, MessageText, "", 38, 9, 92, 20),
    PushButton(Kind::DefaultButton, Ok, "OK", 76, 37),
};

constexpr ControlTemplate kQuestionControls[] = {
    Control(Kind::OwnerDrawn, Picture, "", 9, 9, 21, 20),
    Control(Kind::Paragraph, MessageText, "", 38, 9, 92, 20),
    PushButton(Kind::DefaultButton, Yes, "&Yes", 16, 37),
    PushButton(Kind::Button, No, "&No", 76, 37),
};

constexpr ControlTemplate kNameControls[] = {
    Control(Kind::Label, -1, "&Name:", 7, 9, 24, 8),
    Control(Kind::Edit, Field, "", 33, 7, 160, 13),
    PushButton(Kind::DefaultButton, Ok, "OK", 77, 27),
    PushButton(Kind::Button, Cancel, "&Cancel", 138, 27),
};

constexpr ControlTemplate kRegistrationControls[] = {
    Control(Kind::Paragraph, -1, "Enter the name and the code exactly as they appear in your registration.", 7, 7, 206,
            18),
    Control(Kind::Label, -1, "&Name:", 7, 33, 32, 8),
    Control(Kind::Edit, Field, "", 41, 31, 172, 13),
    Control(Kind::Label, -1, "C&ode:", 7, 50, 32, 8),
    Control(Kind::Edit, SecondField, "", 41, 48, 172, 13),
    PushButton(Kind::DefaultButton, Ok, "OK", 97, 70),
    PushButton(Kind::Button, Cancel, "&Cancel", 158, 70),
};

constexpr ControlTemplate kAboutControls[] = {
    Control(Kind::OwnerDrawn, Picture, "", 0, 0, 240, 60),
    Control(Kind::Paragraph, MessageText, "", 12, 70, 216, 44),
    PushButton(Kind::DefaultButton, Ok, "Close", 173, 122),
};

}  // namespace

const DialogTemplate kMessageBox = {9001, "", 138, 58, kMessageControls};
const DialogTemplate kQuestionBox = {9002, "", 138, 58, kQuestionControls};
const DialogTemplate kNamePrompt = {9003, "", 200, 48, kNameControls};
const DialogTemplate kRegistrationDialog = {9004, "Register", 220, 91, kRegistrationControls};
const DialogTemplate kAboutBox = {9005, "About", 240, 143, kAboutControls};

}  // namespace glyphmotion
