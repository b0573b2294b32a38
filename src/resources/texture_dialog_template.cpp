// SPDX-License-Identifier: MIT
// Dialog 9998: above, the textures of a group, the picture, and what concerns all of it; below, the parameters of the
// layers, a row each. The types share the places: craters take those of the first layer, the curves of a perturbation
// those of all layers but the seeds. The order is the tab order.
#include "resources/panel_layout.h"
#include "resources/templates.h"
#include "resources/texture_controls.h"

namespace glyphmotion {
namespace {

using panel::Control;
using Kind = ControlKind;
using namespace TextureControl;

constexpr int kLeft = 7, kMiddle = 143, kRight = 281;
constexpr int kLayersTop = 136, kButtonsTop = 225;
constexpr int kUpDownOffset = 10000;

// A column of fields; an up-down takes the last part of a number's width.
struct FieldColumn {
  int x, labelWidth, fieldWidth;
};
constexpr FieldColumn kColours{kLeft, 34, 42}, kPowers{93, 42, 42}, kDensities{187, 42, 42}, kSeeds{kRight, 48, 50};

constexpr int RowTop(int row) { return kLayersTop + row * panel::kRowPitch; }

constexpr ControlTemplate LabelOf(int id, const char* caption, int x, int fieldTop, int width) {
  return Control(Kind::Label, id + LabelOffset, caption, x, fieldTop + 2, width, panel::kLabelHeight);
}

constexpr std::array<ControlTemplate, 2> ColourAt(FieldColumn column, int y, int id, const char* caption) {
  return {LabelOf(id, caption, column.x, y, column.labelWidth),
          Control(Kind::ColourButton, id, "", column.x + column.labelWidth + panel::kGap, y, column.fieldWidth,
                  panel::kFieldHeight)};
}

constexpr std::array<ControlTemplate, 3> NumberAt(FieldColumn column, int y, int id, const char* caption,
                                                  const char* range) {
  const int x = column.x + column.labelWidth + panel::kGap, width = column.fieldWidth - panel::kUpDownWidth;
  return {LabelOf(id, caption, column.x, y, column.labelWidth),
          Control(Kind::NumberEdit, id, "", x, y, width, panel::kFieldHeight),
          Control(Kind::UpDown, id + kUpDownOffset, range, x + width, y, panel::kUpDownWidth, panel::kFieldHeight)};
}

constexpr std::array<ControlTemplate, 2> CurveAt(int place, int id, const char* caption) {
  const int x = kLeft + place * 91;
  return {Control(Kind::Label, id + LabelOffset, caption, x, kLayersTop, 84, panel::kLabelHeight),
          Control(Kind::Drawn, id, "", x, kLayersTop + 10, 84, 71)};
}

constexpr const char *kSeedRange = "0,2147483647,10000", *kPowerRange = "0,1000,75", *kDensityRange = "0,400,215";

// Layers are numbered from 1. The fifth is kept in files, but no type shows it.
constexpr auto LayerRow(int layer, const char* colour, const char* power, const char* density, const char* seed) {
  const int y = RowTop(layer - 1);
  return panel::Join(ColourAt(kColours, y, Colour1 + layer - 1, colour),
                     NumberAt(kPowers, y, Power1 + layer - 1, power, kPowerRange),
                     NumberAt(kDensities, y, Density1 + layer - 1, density, kDensityRange),
                     NumberAt(kSeeds, y, Seed1 + layer - 1, seed, kSeedRange));
}

constexpr std::array kLibrary = {
    Control(Kind::Label, -1, "&Group:", kLeft, 9, 26, panel::kLabelHeight),
    Control(Kind::Combo, Group, "", 35, 7, 100, panel::kFieldHeight),
    Control(Kind::Label, -1, "&Textures:", kLeft, 25, 60, panel::kLabelHeight),
    Control(Kind::List, List, "", kLeft, 35, 128, 75),
    Control(Kind::Button, Add, "+", kLeft, 114, 20, 14),
    Control(Kind::Button, Delete, "-", kLeft + 24, 114, 20, 14),
    Control(Kind::Paragraph, -1, "Hold Shift to add or delete a group.", kLeft + 50, 113, 78, 2 * panel::kLabelHeight),
    Control(Kind::OwnerDrawn, Preview, "", kMiddle, 7, 130, 121),
};

constexpr std::array kType = {
    Control(Kind::Label, -1, "T&ype:", kRight, 7, 60, panel::kLabelHeight),
    Control(Kind::Combo, Types, "", kRight, 17, 100, panel::kFieldHeight),
};

constexpr std::array kShowPreview = {Control(Kind::Button, ShowPreview, "&Preview", kRight, 114, 55, 14)};

constexpr std::array kBubbleShape = {
    LabelOf(BubbleShape, "Bubble sh&ape:", kRight, RowTop(4), 48),
    Control(Kind::Combo, BubbleShape, "Ellipse;Fuzzy;Luminous;Sphere", kRight + 50, RowTop(4), 50, panel::kFieldHeight),
};

constexpr std::array kButtons = {
    Control(Kind::DefaultButton, Ok, "OK", 223, kButtonsTop, 50, 14),
    Control(Kind::Button, Cancel, "&Cancel", 277, kButtonsTop, 50, 14),
    Control(Kind::Button, Help, "&Help", 331, kButtonsTop, 50, 14),
};

constexpr auto kControls =
    panel::Join(kLibrary, kType, ColourAt(kSeeds, 36, Background, "Bac&kground:"),
                NumberAt(kSeeds, 36, Perturbation, "Pert&urbation:", "0,1000,100"),
                NumberAt(kSeeds, 53, Matrix, "&Matrix:", "1,1024,64"), kShowPreview,
                LayerRow(1, "Color #&1:", "P&ower #1:", "&Density #1:", "&Seed #1:"),
                LayerRow(2, "Color #&2:", "Power #2:", "Density #2:", "Seed #2:"),
                LayerRow(3, "Color #&3:", "Power #3:", "Density #3:", "Seed #3:"),
                LayerRow(4, "Color #&4:", "Power #4:", "Density #4:", "Seed #4:"),
                LayerRow(5, "Color #5:", "Power #5:", "Density #5:", "Seed #5:"),
                NumberAt(kPowers, RowTop(0), Craters, "C&raters #1:", "0,30000,5000"),
                NumberAt(kDensities, RowTop(0), CraterDepth, "&Depth #1:", "0,1000,150"),
                CurveAt(0, RedCurve, "&Red curve:"), CurveAt(1, GreenCurve, "Gr&een curve:"),
                CurveAt(2, BlueCurve, "&Blue curve:"), NumberAt(kSeeds, RowTop(1), Bubbles, "Bubb&les:", "0,1024,64"),
                NumberAt(kSeeds, RowTop(2), BubbleSize, "Bubble s&ize:", "1,512,4"),
                NumberAt(kSeeds, RowTop(3), BubblePower, "Bubble po&wer:", "-1000,1000,25"), kBubbleShape, kButtons);

constexpr std::array kPreviewControls = {
    Control(Kind::Label, -1, "As a background:", 7, 7, 120, panel::kLabelHeight),
    Control(Kind::OwnerDrawn, AsBackground, "", 7, 17, 300, 110),
    Control(Kind::Label, -1, "As the fill of a text:", 7, 133, 120, panel::kLabelHeight),
    Control(Kind::OwnerDrawn, AsText, "", 7, 143, 300, 80),
    Control(Kind::DefaultButton, Cancel, "Close", 257, 230, 50, 14),
};

}  // namespace

const DialogTemplate kTextureDialogTemplate = {9998, "Texture", 388, 246, kControls};
const DialogTemplate kTexturePreviewTemplate = {9994, "Texture Preview", 314, 251, kPreviewControls};

}  // namespace glyphmotion
