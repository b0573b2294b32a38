// SPDX-License-Identifier: MIT
// The panel of Simple.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 100, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 108, "0,255,255", "Style000FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 112, "2,32760,64", "Style000Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 102, 0x7F7F7F, "Style000ShadowColor"),
    NumberField({kNumbers, 2}, "Opacity:", 110, "0,255,255", "Style000ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 122, "Style000ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 104, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Soft&ness:", 114, "0,40,10", "Style000Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 106, "Style000OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 116, "1,255,4", "Style000ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 123, "Style000OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 120, "Style000ShadowDirection"),
    CheckBox({kChecks, 5}, "Tr&ack", 124, "Style000Track"),
    PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollFour, 118, "Style000Scroll"));

}  // namespace

const DialogTemplate kSimplePanel = {7400, "Simple", 488, 336, kControls};

}  // namespace glyphmotion
