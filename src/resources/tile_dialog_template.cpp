// SPDX-License-Identifier: MIT
// Dialog 9981: the groups and the tiles of one of them on the left, the chosen tile on the right. The list gets its
// height in pixels once the dialog exists; the height given here is the room for it and its scroll bar.
#include "resources/panel_layout.h"
#include "resources/templates.h"
#include "resources/tile_controls.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;

constexpr int kLeft = 7, kRight = 242, kListTop = 34, kButtonsTop = 207;

constexpr std::array kControls = {
    Control(Kind::Label, -1, "&Group:", kLeft, 9, 26, panel::kLabelHeight),
    Control(Kind::Combo, TileControl::Group, "", 35, 7, 110, panel::kFieldHeight),
    Control(Kind::Label, -1, "&Tiles:", kLeft, 24, 60, panel::kLabelHeight),
    Control(Kind::PictureGrid, TileControl::List, "", kLeft, kListTop, 227, 166),
    Control(Kind::Button, TileControl::Add, "+", kLeft, kButtonsTop, 20, 14),
    Control(Kind::Button, TileControl::Delete, "-", kLeft + 24, kButtonsTop, 20, 14),
    Control(Kind::OwnerDrawn, TileControl::Preview, "", kRight, kListTop, 96, 89),
    Control(Kind::Paragraph, TileControl::Size, "", kRight, 127, 96, panel::kLabelHeight),
    Control(Kind::Paragraph, -1, "Hold down the Shift key and click on + or - to add or delete a group.", kRight, 143,
            96, 3 * panel::kLabelHeight),
    Control(Kind::DefaultButton, TileControl::Ok, "OK", 180, kButtonsTop, 50, 14),
    Control(Kind::Button, TileControl::Cancel, "&Cancel", 234, kButtonsTop, 50, 14),
    Control(Kind::Button, TileControl::Help, "&Help", 288, kButtonsTop, 50, 14),
};

}  // namespace

const DialogTemplate kTileDialogTemplate = {9981, "Matrix", 345, 228, kControls};

}  // namespace glyphmotion
