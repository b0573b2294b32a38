// SPDX-License-Identifier: MIT
// The panel of Pulse.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kPulseRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 784, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 792, "0,255,255", "Style017FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 796, "2,32760,24", "Style017Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 786, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 794, "0,255,255", "Style017ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 806, "Style017ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 788, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 798, "0,40,10", "Style017Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 790, "Style017OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 800, "1,255,4", "Style017ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 807, "Style017OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 804, "Style017ShadowDirection")),
           NumberField({kNumbers, 5}, "I&ntensity:", 802, "10,100,100", "Style017Intensity"));

}  // namespace panel

inline constexpr Panel kPulsePanel = panel::MakePanel(7417, "Pulse", panel::kPulseRows);

}  // namespace glyphmotion
