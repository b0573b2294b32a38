// SPDX-License-Identifier: MIT
// The panel of Nebula.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kNebulaRows = RowsOf(
    As(Role::Fill, MaterialField({kSwatches, 1}, "&Fill:", 244, 0xBD7E40)),
    As(Role::FillOpacity, NumberField({kNumbers, 1}, "O&pacity:", 252, "0,255,255", "Style004FillOpacity")),
    NumberField({kChecks, 1}, "Fra&mes:", 256, "2,32760,64", "Style004Frames"),
    As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 246, 0x7F7F7F)),
    As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 254, "0,255,255", "Style004ShadowOpacity")),
    As(Role::ShadowEnable, CheckBox({kChecks, 2}, "S&hadow enable", 264, "Style004ShadowEnable")),
    As(Role::Background, MaterialField({kSwatches, 3}, "&Background:", 248, 0xFFFFFF)),
    As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 258, "0,40,10", "Style004Soft")),
    As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 250, "Style004OutlineColor")),
    As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shado&w offset:", 260, "1,255,4", "Style004ShadowOffset")),
    As(Role::OutlineEnable, CheckBox({kChecks, 4}, "O&utline enable", 265, "Style004OutlineEnable")),
    As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shadow di&rection:", ControlKind::ShadowDirection, 262,
                                          "Style004ShadowDirection")),
    NumberField({kNumbers, 5}, "Random see&d:", 266, "100,32760,12385", "Style004Seed"),
    CheckBox({kChecks, 5}, "Fad&e text", 270, "Style004Fadetext"),
    NumberField({kNumbers, 6}, "Nebula si&ze:", 268, "8,72,32", "Style004Size"),
    CheckBox({kChecks, 6}, "App&ly to shadow", 271, "Style004Scrambleshadow", 76));

}  // namespace panel

inline constexpr Panel kNebulaPanel = panel::MakePanel(7404, "Nebula", panel::kNebulaRows);

}  // namespace glyphmotion
