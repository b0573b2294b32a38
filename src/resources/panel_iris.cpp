// SPDX-License-Identifier: MIT
// The panel of Iris.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr Column kIrisEnables{107, 42}, kIrises{157, 24}, kSizes{255, 20};
constexpr const char* kIrisNames =
    "Square;Diamond;Circle;Horiz. blind;Vert. blind;Diag. left;Diag. right;Chev. left;Chev. right";

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "Fill &1:", 158, 0xE4CAAF),
    NumberField({kNumbers, 1}, "Opacit&y:", 177, "0,255,255", "Style002FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 181, "2,32760,65", "Style002Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 171, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 179, "0,255,255", "Style002ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 189, "Style002ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 173, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Soft&ness:", 183, "0,40,10", "Style002Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 175, "Style002OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 185, "1,255,4", "Style002ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 190, "Style002OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 187, "Style002ShadowDirection"),
    ComboField({kIrises, 5}, "Iris 1:", 191, kIrisNames, "Style002IrisStyle1", 62),
    NumberField({kSizes, 5}, "Size:", 193, "4,64,12", "Style002IrisSize1"),
    MaterialField({kSwatches, 6}, "Fill &2:", 160, 0xD3A97E),
    ComboField({kIrises, 6}, "Iris 2:", 195, kIrisNames, "Style002IrisStyle2", 62),
    NumberField({kSizes, 6}, "Size:", 197, "4,64,12", "Style002IrisSize2"),
    MaterialField({kSwatches, 7}, "Fill &3:", 162, 0x996633),
    CheckBox({kIrisEnables, 7}, "Enable", 164, "Style002FillEnable3", 42),
    ComboField({kIrises, 7}, "Iris 3:", 199, kIrisNames, "Style002IrisStyle3", 62),
    NumberField({kSizes, 7}, "Size:", 201, "4,64,12", "Style002IrisSize3"),
    MaterialField({kSwatches, 8}, "Fill &4:", 165, 0xD3A97E),
    CheckBox({kIrisEnables, 8}, "Enable", 167, "Style002FillEnable4", 42),
    ComboField({kIrises, 8}, "Iris 4:", 203, kIrisNames, "Style002IrisStyle4", 62),
    NumberField({kSizes, 8}, "Size:", 205, "4,64,12", "Style002IrisSize4"),
    MaterialField({kSwatches, 9}, "Fill &5:", 168, 0x1F140A),
    CheckBox({kIrisEnables, 9}, "Enable", 170, "Style002FillEnable5", 42),
    ComboField({kIrises, 9}, "Iris 5:", 207, kIrisNames, "Style002IrisStyle5", 62),
    NumberField({kSizes, 9}, "Size:", 209, "4,64,12", "Style002IrisSize5"));

}  // namespace

const DialogTemplate kIrisPanel = {7402, "Iris", 488, 336, kControls};

}  // namespace glyphmotion
