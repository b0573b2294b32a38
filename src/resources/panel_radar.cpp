// SPDX-License-Identifier: MIT
// The panel of Radar. The sign of Increment is the sense of rotation, its size decides the number of frames.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

// The whole steps that divide a turn evenly.
constexpr const char* kIncrements =
    "-60;-45;-40;-30;-24;-20;-15;-12;-10;-9;-8;-6;-5;-4;-3;-2;-1;1;2;3;4;5;6;8;9;10;12;15;20;24;30;40;45;60";

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 538, 0x000000),
    NumberField({kNumbers, 1}, "Opacit&y:", 546, "0,255,255", "Style011FillOpacity"),
    MaterialField({kSwatches, 2}, "&Shadow:", 540, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 548, "0,255,255", "Style011ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 558, "Style011ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 542, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 550, "0,40,10", "Style011Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 544, "Style011OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 552, "1,255,4", "Style011ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 559, "Style011OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 556, "Style011ShadowDirection"),
    ColourField({kSwatches, 5}, "T&race:", 560, "Style011TraceColor"),
    NumberField({kNumbers, 5}, "Trace &angle:", 554, "30,320,180", "Style011Angle"),
    CheckBox({kChecks, 5}, "&Mask center", 564, "Style011MaskCenter"),
    ComboField({kNumbers, 6}, "I&ncrement:", 562, kIncrements, "Style011Increment", 40));

}  // namespace

const DialogTemplate kRadarPanel = {7411, "Radar", 488, 336, kControls};

}  // namespace glyphmotion
