// SPDX-License-Identifier: MIT
// The panel of Fuse.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 459, 0x00CCFF),
    NumberField({kNumbers, 1}, "Opacit&y:", 467, "0,255,255", "Style009FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 471, "2,32760,64", "Style009Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 461, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 469, "0,255,255", "Style009ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 481, "Style009ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 463, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Soft&ness:", 473, "0,40,10", "Style009Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 465, "Style009OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 475, "1,255,4", "Style009ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 482, "Style009OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 479, "Style009ShadowDirection"),
    MaterialField({kSwatches, 5}, "B&ack fill:", 485, 0x202020),
    NumberField({kNumbers, 5}, "Leaf size:", 483, "1,64,2", "Style009Size"),
    PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollAxis, 477, "Style009Scroll"));

}  // namespace

const DialogTemplate kFusePanel = {7409, "Fuse", 488, 336, kControls};

}  // namespace glyphmotion
