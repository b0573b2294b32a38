// SPDX-License-Identifier: MIT
// Dialog 9995, the gradient editor. The preview is at the left, the shape and its numbers beside it, the colours in
// a box of their own below: a row for two colours, a row for many. The order is the tab order.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;

constexpr int kMargin = 7, kPadding = 4, kWidth = 325, kHeight = 214;
constexpr int kPreviewWidth = 150, kPreviewHeight = 94;
constexpr int kShapeLeft = kMargin + kPreviewWidth + kMargin, kShapeWidth = 75, kShapeHeight = 27;
constexpr int kShapeRight = kShapeLeft + kShapeWidth + kPadding;
constexpr int kNumbersTop = 71, kHintTop = 104;
constexpr int kColoursTop = 118, kTwoTop = 131, kManyTop = 150, kColoursLeft = 68;
constexpr int kButtonsTop = kHeight - kMargin - 14, kButtonWidth = 50;

constexpr ControlTemplate Shape(int id, const char* caption, int x, int row) {
  return Control(Kind::Drawn, id, caption, x, kMargin + row * (kShapeHeight + kPadding), kShapeWidth, kShapeHeight);
}

constexpr ControlTemplate Label(int id, const char* caption, int x, int fieldTop, int width) {
  return Control(Kind::Label, id, caption, x, fieldTop + 2, width, panel::kLabelHeight);
}

// The edit is as wide as those of the main dialog, whose pixels do not depend on their place.
constexpr std::array<ControlTemplate, 3> Number(int id, const char* caption, const char* range, int x, int row) {
  const int y = kNumbersTop + row * panel::kRowPitch;
  return {Label(id + 100, caption, x, y, 34), Control(Kind::NumberEdit, id, "", x + 37, y, 28, panel::kFieldHeight),
          Control(Kind::UpDown, id + 10000, range, x + 65, y, panel::kUpDownWidth, panel::kFieldHeight)};
}

constexpr ControlTemplate Button(int place, int id, const char* caption, Kind kind = Kind::Button) {
  return Control(kind, id, caption, kWidth - kMargin - (3 - place) * kButtonWidth - (2 - place) * kPadding, kButtonsTop,
                 kButtonWidth, 14);
}

constexpr std::array kPicture = {
    Control(Kind::Drawn, 105, "Preview", kMargin, kMargin, kPreviewWidth, kPreviewHeight),
    Control(Kind::Paragraph, 121, "", kMargin, kHintTop, kWidth - 2 * kMargin, 8),
    Shape(101, "Linear", kShapeLeft, 0),
    Shape(104, "Conical", kShapeRight, 0),
    Shape(102, "Elliptical", kShapeLeft, 1),
    Shape(103, "Rectangular", kShapeRight, 1),
};

constexpr std::array kColours = {
    Control(Kind::Group, -1, "Colors", kMargin, kColoursTop, kWidth - 2 * kMargin, 69),
    Control(Kind::Radio, 118, "&Two-color", 14, kTwoTop + 2, 52, 10),
    Control(Kind::Radio, 119, "&Multi-color", 14, kManyTop + 11, 52, 10),
    Label(207, "&Start:", kColoursLeft, kTwoTop, 19),
    Control(Kind::ColourButton, 107, "", 89, kTwoTop, 28, panel::kFieldHeight),
    Label(206, "&End:", 124, kTwoTop, 16),
    Control(Kind::ColourButton, 106, "", 142, kTwoTop, 28, panel::kFieldHeight),
    Label(210, "M&idpoint:", 179, kTwoTop, 32),
    Control(Kind::Trackbar, 108, "", 211, kTwoTop - 1, 74, 18),
    Control(Kind::NumberEdit, 110, "", 288, kTwoTop, 24, panel::kFieldHeight),
    Control(Kind::Paragraph, 220, "Double-click to add a color.\nDrag a handle to move it.\nRight-click for more.", 218,
            kManyTop + 4, 94, 24),
    Control(Kind::FountainButton, 120, "", kColoursLeft, kManyTop, 132, 31),
};

constexpr auto kControls = panel::Join(
    kPicture, Number(111, "&Rotation:", "-360,360,0", kShapeLeft, 0),
    Number(112, "Edge &pad:", "0,45,0", kShapeRight, 0), Number(113, "Center &X:", "-100,100,0", kShapeLeft, 1),
    Number(114, "Center &Y:", "-100,100,0", kShapeRight, 1), kColours,
    std::array{Button(0, 1, "OK", Kind::DefaultButton), Button(1, 2, "&Cancel"), Button(2, 9, "&Help")});

}  // namespace

const DialogTemplate kGradientDialogTemplate = {9995, "Gradient", kWidth, kHeight, kControls};

}  // namespace glyphmotion
