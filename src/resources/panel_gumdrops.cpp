// SPDX-License-Identifier: MIT
// The panel of Gumdrops.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 405, 0x996633),
    NumberField({kNumbers, 1}, "Opacity:", 387, "0,255,255", "Style007FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 391, "2,32760,64", "Style007Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 381, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 389, "0,255,255", "Style007ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 399, "Style007ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 383, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 393, "0,40,10", "Style007Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 385, "Style007OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 395, "1,255,4", "Style007ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 400, "Style007OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 397, "Style007ShadowDirection"),
    ColourField({kSwatches, 5}, "Gumdrop &1:", 367, "Style007FillColor1"),
    NumberField({kNumbersRight, 5}, "Ra&ndom seed:", 401, "100,32760,17659", "Style007Seed"),
    ColourField({kSwatches, 6}, "Gumdrop &2:", 369, "Style007FillColor2"),
    CheckBox({kEnables, 6}, "Enable", 371, "Style007FillEnable2", 42),
    NumberField({kNumbersRight, 6}, "Densit&y:", 403, "1,640,64", "Style007Density"),
    ColourField({kSwatches, 7}, "Gumdrop &3:", 372, "Style007FillColor3"),
    CheckBox({kEnables, 7}, "Enable", 374, "Style007FillEnable3", 42),
    NumberField({kNumbersRight, 7}, "Size:", 408, "10,200,80", "Style007Size"),
    ColourField({kSwatches, 8}, "Gumdrop &4:", 375, "Style007FillColor4"),
    CheckBox({kEnables, 8}, "Enable", 377, "Style007FillEnable4", 42),
    NumberField({kNumbersRight, 8}, "D&rift:", 410, "0,100,5", "Style007Drift"),
    ColourField({kSwatches, 9}, "Gumdrop &5:", 378, "Style007FillColor5"),
    CheckBox({kEnables, 9}, "Enable", 380, "Style007FillEnable5", 42),
    CheckBox({kNumbersRight, 9}, "Bevel", 407, "Style007BevelEnable"));

}  // namespace

const DialogTemplate kGumdropsPanel = {7407, "Gumdrops", 488, 336, kControls};

}  // namespace glyphmotion
