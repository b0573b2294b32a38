// SPDX-License-Identifier: MIT
// The panel of Simple.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kSimpleRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 100, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 108, "0,255,255", "Style000FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 112, "2,32760,64", "Style000Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 102, 0x7F7F7F, "Style000ShadowColor")),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 110, "0,255,255", "Style000ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 122, "Style000ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 104, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 114, "0,40,10", "Style000Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 106, "Style000OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 116, "1,255,4", "Style000ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 123, "Style000OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 120, "Style000ShadowDirection")),
           CheckBox({kChecks, 5}, "Tr&ack", 124, "Style000Track"),
           PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollFour, 118, "Style000Scroll"));

}  // namespace panel

inline constexpr Panel kSimplePanel = panel::MakePanel(7400, "Simple", panel::kSimpleRows);

}  // namespace glyphmotion
