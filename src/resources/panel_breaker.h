// SPDX-License-Identifier: MIT
// The panel of Breaker.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kBreakerRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 672, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 680, "0,255,255", "Style014FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 684, "2,32760,64", "Style014Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 674, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 682, "0,255,255", "Style014ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 694, "Style014ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 676, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 686, "0,40,10", "Style014Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 678, "Style014OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 688, "1,255,4", "Style014ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 695, "Style014OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 692, "Style014ShadowDirection")),
           NumberField({kNumbers, 5}, "Rotatio&n:", 690, "32,1440,720", "Style014Rotate"),
           CheckBox({kChecks, 5}, "Smooth", 696, "Style014Smooth"),
           PickerField({kDirections, 5}, "B&reaker direction:", ControlKind::ScrollTwo, 697, "Style014Scroll"));

}  // namespace panel

inline constexpr Panel kBreakerPanel = panel::MakePanel(7414, "Breaker", panel::kBreakerRows);

}  // namespace glyphmotion
