// SPDX-License-Identifier: MIT
// The panel of Singularity.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kSingularityRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 924, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 932, "0,255,255", "Style020FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 936, "2,32760,64", "Style020Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 926, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 934, "0,255,255", "Style020ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 946, "Style020ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 928, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 938, "0,40,10", "Style020Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 930, "Style020OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 940, "1,255,4", "Style020ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 947, "Style020OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 944, "Style020ShadowDirection")),
           NumberField({kNumbers, 5}, "A&ngle:", 942, "45,720,224", "Style020Angle"),
           CheckBox({kChecks, 5}, "Smooth", 950, "Style020Smooth"),
           PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollTwo, 948, "Style020Scroll"));

}  // namespace panel

inline constexpr Panel kSingularityPanel = panel::MakePanel(7420, "Singularity", panel::kSingularityRows);

}  // namespace glyphmotion
