// SPDX-License-Identifier: MIT
// The panel of Cubist.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kCubistRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 870, 0xCC0099)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 892, "0,255,255", "Style019FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 896, "2,32760,64", "Style019Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 886, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 894, "0,255,255", "Style019ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 904, "Style019ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 888, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 898, "0,40,10", "Style019Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 890, "Style019OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 900, "1,255,4", "Style019ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 905, "Style019OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 902, "Style019ShadowDirection")),
           ColourField({kSwatches, 5}, "Beam &1:", 872, "Style019BeamColor1"),
           NumberField({kNumbersRight, 5}, "Densit&y:", 906, "0,100,32", "Style019Density"),
           ColourField({kSwatches, 6}, "Beam &2:", 874, "Style019BeamColor2"),
           CheckBox({kEnables, 6}, "Enable", 876, "Style019BeamEnable2", 42),
           NumberField({kNumbersRight, 6}, "R&andom seed:", 908, "100,32760,12860", "Style019Seed"),
           ColourField({kSwatches, 7}, "Beam &3:", 877, "Style019BeamColor3"),
           CheckBox({kEnables, 7}, "Enable", 879, "Style019BeamEnable3", 42),
           NumberField({kNumbersRight, 7}, "Li&ne width:", 912, "1,16,8", "Style019Width"),
           ColourField({kSwatches, 8}, "Beam &4:", 880, "Style019BeamColor4"),
           CheckBox({kEnables, 8}, "Enable", 882, "Style019BeamEnable4", 42),
           CheckBox({kNumbersRight, 8}, "Va&riable density", 910, "Style019VariAlpha", 90),
           ColourField({kSwatches, 9}, "Beam &5:", 883, "Style019BeamColor5"),
           CheckBox({kEnables, 9}, "Enable", 885, "Style019BeamEnable5", 42),
           CheckBox({kNumbersRight, 9}, "Variable line width", 911, "Style019VariWidth", 90));

}  // namespace panel

inline constexpr Panel kCubistPanel = panel::MakePanel(7419, "Cubist", panel::kCubistRows);

}  // namespace glyphmotion
