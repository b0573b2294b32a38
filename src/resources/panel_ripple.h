// SPDX-License-Identifier: MIT
// The panel of Ripple, whose text has no shadow.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kRippleRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 135, 0xBD7E40)),
           NumberField({kChecks, 1}, "Fra&mes:", 141, "2,32760,64", "Style001Frames"),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 137, 0xFFFFFF)),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 139, "Style001OutlineColor")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline en&able", 145, "Style001OutlineEnable")),
           NumberField({kNumbers, 5}, "Ra&nge:", 143, "8,60,48", "Style001Range"),
           NumberField({kNumbers, 6}, "&Ripple size:", 146, "5,80,20", "Style001Wavesize"));

}  // namespace panel

inline constexpr Panel kRipplePanel = panel::MakePanel(7401, "Ripple", panel::kRippleRows);

}  // namespace glyphmotion
