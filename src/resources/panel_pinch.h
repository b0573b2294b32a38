// SPDX-License-Identifier: MIT
// The panel of Pinch, whose text has no shadow.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kPinchRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 221, 0xBD7E40)),
           NumberField({kChecks, 1}, "Fra&mes:", 227, "2,32760,64", "Style003Frames"),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 223, 0xFFFFFF)),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 225, "Style003OutlineColor")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline en&able", 229, "Style003OutlineEnable")),
           NumberField({kNumbers, 5}, "Pinch &width:", 230, "10,50,20", "Style003Wavesize"),
           NumberField({kNumbers, 6}, "Pi&nch depth:", 232, "1,99,60", "Style003Waveheight"));

}  // namespace panel

inline constexpr Panel kPinchPanel = panel::MakePanel(7403, "Pinch", panel::kPinchRows);

}  // namespace glyphmotion
