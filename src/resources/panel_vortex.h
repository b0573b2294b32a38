// SPDX-License-Identifier: MIT
// The panel of Vortex.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kVortexRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 422, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 430, "0,255,255", "Style008FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 434, "2,32760,64", "Style008Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 424, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 432, "0,255,255", "Style008ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 444, "Style008ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 426, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 436, "0,40,10", "Style008Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 428, "Style008OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 438, "1,255,4", "Style008ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 445, "Style008OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 442, "Style008ShadowDirection")),
           NumberField({kNumbers, 5}, "Rotatio&n:", 440, "32,1440,360", "Style008Rotate"),
           CheckBox({kChecks, 5}, "Smooth", 446, "Style008Smooth"),
           PickerField({kDirections, 5}, "Vo&rtex direction:", ControlKind::ScrollTwo, 447, "Style008Scroll"));

}  // namespace panel

inline constexpr Panel kVortexPanel = panel::MakePanel(7408, "Vortex", panel::kVortexRows);

}  // namespace glyphmotion
