// SPDX-License-Identifier: MIT
// The panel of Radar. The sign of Increment is the sense of rotation, its size decides the number of frames.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

// The whole steps that divide a turn evenly.
constexpr const char* kIncrements =
    "-60;-45;-40;-30;-24;-20;-15;-12;-10;-9;-8;-6;-5;-4;-3;-2;-1;1;2;3;4;5;6;8;9;10;12;15;20;24;30;40;45;60";

inline constexpr auto kRadarRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 538, 0x000000)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 546, "0,255,255", "Style011FillOpacity")),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 540, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 548, "0,255,255", "Style011ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 558, "Style011ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 542, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 550, "0,40,10", "Style011Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 544, "Style011OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 552, "1,255,4", "Style011ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 559, "Style011OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 556, "Style011ShadowDirection")),
           ColourField({kSwatches, 5}, "T&race:", 560, "Style011TraceColor"),
           NumberField({kNumbers, 5}, "Trace &angle:", 554, "30,320,180", "Style011Angle"),
           CheckBox({kChecks, 5}, "&Mask center", 564, "Style011MaskCenter"),
           ComboField({kNumbers, 6}, "I&ncrement:", 562, kIncrements, "Style011Increment", 40));

}  // namespace panel

inline constexpr Panel kRadarPanel = panel::MakePanel(7411, "Radar", panel::kRadarRows);

}  // namespace glyphmotion
