// SPDX-License-Identifier: MIT
// The panel of Event Horizon.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kEventHorizonRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 749, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 757, "0,255,255", "Style016FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 761, "2,32760,64", "Style016Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 751, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 759, "0,255,255", "Style016ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 769, "Style016ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 753, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 763, "0,40,10", "Style016Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 755, "Style016OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 765, "1,255,4", "Style016ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 770, "Style016OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 767, "Style016ShadowDirection")),
           NumberField({kNumbers, 5}, "&Radius:", 772, "1,32,8", "Style016Radius"),
           CheckBox({kChecks, 5}, "Alter&nate universe", 771, "Style016Alternate", 76));

}  // namespace panel

inline constexpr Panel kEventHorizonPanel = panel::MakePanel(7416, "Event Horizon", panel::kEventHorizonRows);

}  // namespace glyphmotion
