// SPDX-License-Identifier: MIT
// The panel of Background Hyperspace.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 709, 0xE8D1BB),
    NumberField({kNumbers, 1}, "Opacity:", 717, "0,255,255", "Style015FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 721, "2,32760,96", "Style015Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 711, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 719, "0,255,255", "Style015ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 731, "Style015ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 713, 0x000000),
    NumberField({kNumbers, 3}, "Softness:", 723, "0,40,10", "Style015Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 715, "Style015OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 725, "1,255,4", "Style015ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 732, "Style015OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 729, "Style015ShadowDirection"),
    ColourField({kSwatches, 5}, "St&ar color:", 737, "Style015SparkColor"),
    NumberField({kNumbers, 5}, "Ra&ndom seed:", 733, "100,32760,22426", "Style015Seed"),
    NumberField({kNumbers, 6}, "Star densit&y:", 735, "8,255,25", "Style015Density"),
    PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollTwo, 727, "Style015Scroll"));

}  // namespace

const DialogTemplate kBackgroundHyperspacePanel = {7415, "Background Hyperspace", 488, 336, kControls};

}  // namespace glyphmotion
