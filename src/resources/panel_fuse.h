// SPDX-License-Identifier: MIT
// The panel of Fuse.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kFuseRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 459, 0x00CCFF)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 467, "0,255,255", "Style009FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 471, "2,32760,64", "Style009Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 461, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 469, "0,255,255", "Style009ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 481, "Style009ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 463, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 473, "0,40,10", "Style009Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 465, "Style009OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 475, "1,255,4", "Style009ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 482, "Style009OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 479, "Style009ShadowDirection")),
           As(Role::Material2, MaterialField({kSwatches, 5}, "B&ack fill:", 485, 0x202020)),
           NumberField({kNumbers, 5}, "Leaf size:", 483, "1,64,2", "Style009Size"),
           PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollAxis, 477, "Style009Scroll"));

}  // namespace panel

inline constexpr Panel kFusePanel = panel::MakePanel(7409, "Fuse", panel::kFuseRows);

}  // namespace glyphmotion
