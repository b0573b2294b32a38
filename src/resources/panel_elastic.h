// SPDX-License-Identifier: MIT
// The panel of Elastic.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kElasticRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 575, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 583, "0,255,255", "Style012FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 587, "2,32760,64", "Style012Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 577, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 585, "0,255,255", "Style012ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 595, "Style012ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 579, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 589, "0,40,10", "Style012Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 581, "Style012OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 591, "1,255,4", "Style012ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 596, "Style012OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 593, "Style012ShadowDirection")),
           NumberField({kNumbers, 5}, "Ene&rgy:", 597, "5,100,20", "Style012Energy"));

}  // namespace panel

inline constexpr Panel kElasticPanel = panel::MakePanel(7412, "Elastic", panel::kElasticRows);

}  // namespace glyphmotion
