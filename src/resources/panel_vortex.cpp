// SPDX-License-Identifier: MIT
// The panel of Vortex.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 422, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 430, "0,255,255", "Style008FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 434, "2,32760,64", "Style008Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 424, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 432, "0,255,255", "Style008ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 444, "Style008ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 426, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 436, "0,40,10", "Style008Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 428, "Style008OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 438, "1,255,4", "Style008ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 445, "Style008OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 442, "Style008ShadowDirection"),
    NumberField({kNumbers, 5}, "Rotatio&n:", 440, "32,1440,360", "Style008Rotate"),
    CheckBox({kChecks, 5}, "Smooth", 446, "Style008Smooth"),
    PickerField({kDirections, 5}, "Vo&rtex direction:", ControlKind::ScrollTwo, 447, "Style008Scroll"));

}  // namespace

const DialogTemplate kVortexPanel = {7408, "Vortex", 488, 336, kControls};

}  // namespace glyphmotion
