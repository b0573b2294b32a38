// SPDX-License-Identifier: MIT
// The panel of Gumdrops.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kGumdropsRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 405, 0x996633)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 387, "0,255,255", "Style007FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 391, "2,32760,64", "Style007Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 381, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 389, "0,255,255", "Style007ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 399, "Style007ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 383, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 393, "0,40,10", "Style007Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 385, "Style007OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 395, "1,255,4", "Style007ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 400, "Style007OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 397, "Style007ShadowDirection")),
           ColourField({kSwatches, 5}, "Gumdrop &1:", 367, "Style007FillColor1"),
           NumberField({kNumbersRight, 5}, "Ra&ndom seed:", 401, "100,32760,17659", "Style007Seed"),
           ColourField({kSwatches, 6}, "Gumdrop &2:", 369, "Style007FillColor2"),
           CheckBox({kEnables, 6}, "Enable", 371, "Style007FillEnable2", 42),
           NumberField({kNumbersRight, 6}, "Densit&y:", 403, "1,640,64", "Style007Density"),
           ColourField({kSwatches, 7}, "Gumdrop &3:", 372, "Style007FillColor3"),
           CheckBox({kEnables, 7}, "Enable", 374, "Style007FillEnable3", 42),
           NumberField({kNumbersRight, 7}, "Size:", 408, "10,200,80", "Style007Size"),
           ColourField({kSwatches, 8}, "Gumdrop &4:", 375, "Style007FillColor4"),
           CheckBox({kEnables, 8}, "Enable", 377, "Style007FillEnable4", 42),
           NumberField({kNumbersRight, 8}, "D&rift:", 410, "0,100,5", "Style007Drift"),
           ColourField({kSwatches, 9}, "Gumdrop &5:", 378, "Style007FillColor5"),
           CheckBox({kEnables, 9}, "Enable", 380, "Style007FillEnable5", 42),
           CheckBox({kNumbersRight, 9}, "Bevel", 407, "Style007BevelEnable"));

}  // namespace panel

inline constexpr Panel kGumdropsPanel = panel::MakePanel(7407, "Gumdrops", panel::kGumdropsRows);

}  // namespace glyphmotion
