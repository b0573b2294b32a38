// SPDX-License-Identifier: MIT
// The panel of Hyperspace.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 327, 0x664422),
    NumberField({kNumbers, 1}, "Opacity:", 335, "0,255,255", "Style006FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 339, "2,32760,96", "Style006Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 329, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 337, "0,255,255", "Style006ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 349, "Style006ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 331, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 341, "0,40,10", "Style006Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 333, "Style006OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 343, "1,255,4", "Style006ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 350, "Style006OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 347, "Style006ShadowDirection"),
    ColourField({kSwatches, 5}, "St&ar color:", 355, "Style006SparkColor"),
    NumberField({kNumbers, 5}, "Ra&ndom seed:", 351, "100,32760,22421", "Style006Seed"),
    NumberField({kNumbers, 6}, "Star densit&y:", 353, "8,255,40", "Style006Density"),
    PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollTwo, 345, "Style006Scroll"));

}  // namespace

const DialogTemplate kHyperspacePanel = {7406, "Hyperspace", 488, 336, kControls};

}  // namespace glyphmotion
