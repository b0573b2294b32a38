// SPDX-License-Identifier: MIT
// The panel of Background Hyperspace.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "&Fill:", 709, 0xE8D1BB),
    NumberField({kNumbers, 1}, "O&pacity:", 717, "0,255,255", "Style015FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 721, "2,32760,96", "Style015Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 711, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 719, "0,255,255", "Style015ShadowOpacity"),
    CheckBox({kChecks, 2}, "S&hadow enable", 731, "Style015ShadowEnable"),
    MaterialField({kSwatches, 3}, "&Background:", 713, 0x000000),
    NumberField({kNumbers, 3}, "Soft&ness:", 723, "0,40,10", "Style015Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 715, "Style015OutlineColor"),
    NumberField({kNumbers, 4}, "Shado&w offset:", 725, "1,255,4", "Style015ShadowOffset"),
    CheckBox({kChecks, 4}, "O&utline enable", 732, "Style015OutlineEnable"),
    PickerField({kDirections, 1}, "Shadow di&rection:", ControlKind::ShadowDirection, 729, "Style015ShadowDirection"),
    ColourField({kSwatches, 5}, "Star &color:", 737, "Style015SparkColor"),
    NumberField({kNumbers, 5}, "Random see&d:", 733, "100,32760,22426", "Style015Seed"),
    NumberField({kNumbers, 6}, "Star densit&y:", 735, "8,255,25", "Style015Density"),
    PickerField({kDirections, 5}, "Scro&ll:", ControlKind::ScrollTwo, 727, "Style015Scroll"));

}  // namespace

const DialogTemplate kBackgroundHyperspacePanel = {7415, "Background Hyperspace", 488, 336, kControls};

}  // namespace glyphmotion
