// SPDX-License-Identifier: MIT
// Dialog 1000. On the left the sample window, the text and its font, the effect and, below it, the effect's panel; on
// the right what all effects share: spacing, timing, colours and output, and the buttons. The order is the tab order.
//
// Letters are few: what is underlined here is underlined in no panel, so the buttons, the first options of each block
// and the six that nearly all panels have come before single options, which the Tab key reaches from there.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;

constexpr int kLeft = 7, kRight = 353;  // the two halves
constexpr int kTextTop = 121, kFontTop = 138, kEffectTop = 157;
constexpr int kChecksTop = 112, kCheckPitch = 15;
constexpr int kButtonsTop = 261, kButtonPitch = 18, kButtonWidth = 62, kButtonHeight = 14, kSecondButton = 419;

constexpr ControlTemplate Label(const char* caption, int x, int fieldTop, int width) {
  return Control(Kind::Label, -1, caption, x, fieldTop + 2, width, panel::kLabelHeight);
}

// One of the checks of the right half, from the top.
constexpr ControlTemplate OutputCheck(int place, int id, const char* caption, const char* key) {
  return Control(Kind::Check, id, caption, kRight, kChecksTop + place * kCheckPitch, 128, panel::kCheckHeight, key);
}

// A number of the right half: its label at the left, the field at the dialog's right margin. A width of whole quarters
// is as many pixels at any place: the up-down begins where the edit ends.
constexpr std::array<ControlTemplate, 3> RightNumber(int y, const char* caption, int id, const char* range,
                                                     const char* key) {
  return {Label(caption, kRight, y, 60), Control(Kind::NumberEdit, id, "", 443, y, 28, panel::kFieldHeight, key),
          Control(Kind::UpDown, id + 10000, range, 471, y, 10, panel::kFieldHeight)};
}

constexpr ControlTemplate Button(int row, bool second, int id, const char* caption, Kind kind = Kind::Button) {
  return Control(kind, id, caption, second ? kSecondButton : kRight, kButtonsTop + row * kButtonPitch, kButtonWidth,
                 kButtonHeight);
}

constexpr std::array kTextAndEffect = {
    Control(Kind::OwnerDrawn, 25, "", kLeft, 7, 338, 110),
    Control(Kind::OwnerDrawn, 12, "", kLeft, kTextTop, 92, 13),
    Label("Te&xt:", 107, kTextTop, 20),
    Control(Kind::Edit, 52, "", 129, kTextTop, 216, 13, "MainText"),
    Label("&Font:", kLeft, kFontTop, 24),
    Control(Kind::SortedCombo, 53, "", 33, kFontTop, 104, 13, "MainFontName"),
    Label("Si&ze:", 145, kFontTop, 18),
    Control(Kind::NumberEdit, 57, "", 165, kFontTop, 24, 13, "MainFontSize"),
    Control(Kind::UpDown, 10057, "4,144,24", 189, kFontTop, 10, 13),
    Control(Kind::Check, 54, "Bold", 207, kFontTop + 2, 34, 10, "MainFontBold"),
    Control(Kind::Check, 55, "Italic", 245, kFontTop + 2, 36, 10, "MainFontItalic"),
    Control(Kind::Check, 51, "Antialias", 285, kFontTop + 2, 56, 10, "MainAntialias"),
    Label("&Effect:", kLeft, kEffectTop, 24),
    Control(Kind::Combo, 58, "", 33, kEffectTop, 104, 13, "MainEffect"),
};

constexpr std::array kOutput = {
    Label("&Palette:", kRight, 95, 30),
    Control(Kind::Combo, 13, "", 385, 95, 96, 13, "MainPalette"),
    OutputCheck(0, 14, "Custom palette", nullptr),
    OutputCheck(1, 15, "Dither", "MainDither"),
    OutputCheck(2, 10, "True color", "Truecolour"),
    OutputCheck(3, 19, "Supercompress", "MainSupercompress"),
    OutputCheck(4, 35, "Transparent", "MainTransparent"),
    OutputCheck(5, 21, "Mask background", "MainMaskBackground"),
    OutputCheck(6, 62, "Alpha transparency", "MainAlphaTrans"),
    OutputCheck(7, 63, "Alpha background", "UseAlphaGreyBack"),
    OutputCheck(8, 20, "A&dd comment", "AddDescriptiveCommentBlock"),
};

// The place of the last button is the about animation's.
constexpr std::array kButtons = {
    Button(0, false, 1, "&Build", Kind::DefaultButton),
    Button(0, true, 24, "&Test"),
    Button(1, false, 36, "Open/Sa&ve"),
    Button(1, true, 2, "&Cancel"),
    Button(2, false, 9, "&Help"),
    Button(2, true, 18, "Abo&ut"),
    Button(3, false, 16, "Re&gister"),
    Button(3, true, 17, "", Kind::OwnerDrawn),
};

constexpr auto kControls = panel::Join(
    kTextAndEffect, RightNumber(7, "Character space:", 61, "50,150,100", "MainFontSpace"),
    RightNumber(24, "Pad:", 59, "0,512,0", "MainPadding"), RightNumber(44, "De&lay:", 11, "1,1000,10", "MainDelay"),
    RightNumber(61, "Pause:", 23, "1,10000,10", "MainPause"),
    std::array{Control(Kind::Check, 22, "Animated", kRight, 78, 128, 10, "MainRolling")}, kOutput, kButtons);

}  // namespace

const DialogTemplate kMainDialogTemplate = {1000, "Glyphmotion #4", 488, 336, kControls};

}  // namespace glyphmotion
