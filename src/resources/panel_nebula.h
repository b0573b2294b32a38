// SPDX-License-Identifier: MIT
// The panel of Nebula.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kNebulaRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 244, 0xBD7E40)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 252, "0,255,255", "Style004FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 256, "2,32760,64", "Style004Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 246, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 254, "0,255,255", "Style004ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 264, "Style004ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 248, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 258, "0,40,10", "Style004Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 250, "Style004OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 260, "1,255,4", "Style004ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 265, "Style004OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 262, "Style004ShadowDirection")),
           NumberField({kNumbers, 5}, "Ra&ndom seed:", 266, "100,32760,12385", "Style004Seed"),
           CheckBox({kChecks, 5}, "F&ade text", 270, "Style004Fadetext"),
           NumberField({kNumbers, 6}, "Nebula size:", 268, "8,72,32", "Style004Size"),
           CheckBox({kChecks, 6}, "Appl&y to shadow", 271, "Style004Scrambleshadow", 76));

}  // namespace panel

inline constexpr Panel kNebulaPanel = panel::MakePanel(7404, "Nebula", panel::kNebulaRows);

}  // namespace glyphmotion
