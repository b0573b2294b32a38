// SPDX-License-Identifier: MIT
// The panel of Phasers on Stun.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kPhasersOnStunRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 818, 0x000000)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 840, "0,255,255", "Style018FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 844, "2,32760,32", "Style018Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 834, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 842, "0,255,255", "Style018ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 852, "Style018ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 836, 0x000000)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 846, "0,40,10", "Style018Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 838, "Style018OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 848, "1,255,4", "Style018ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 853, "Style018OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 850, "Style018ShadowDirection")),
           ColourField({kSwatches, 5}, "Beam &1:", 820, "Style018BeamColor1"),
           NumberField({kNumbersRight, 5}, "Seed:", 854, "100,32760,16252", "Style018Seed"),
           ColourField({kSwatches, 6}, "Beam &2:", 822, "Style018BeamColor2"),
           CheckBox({kEnables, 6}, "Enable", 824, "Style018BeamEnable2", 42),
           NumberField({kNumbersRight, 6}, "Densit&y:", 856, "16,2048,96", "Style018Density"),
           ColourField({kSwatches, 7}, "Beam &3:", 825, "Style018BeamColor3"),
           CheckBox({kEnables, 7}, "Enable", 827, "Style018BeamEnable3", 42),
           NumberField({kNumbersRight, 7}, "Beam powe&r:", 858, "1,8,3", "Style018Beamsize"),
           ColourField({kSwatches, 8}, "Beam &4:", 828, "Style018BeamColor4"),
           CheckBox({kEnables, 8}, "Enable", 830, "Style018BeamEnable4", 42),
           ColourField({kSwatches, 9}, "Beam &5:", 831, "Style018BeamColor5"),
           CheckBox({kEnables, 9}, "Enable", 833, "Style018BeamEnable5", 42));

}  // namespace panel

inline constexpr Panel kPhasersOnStunPanel = panel::MakePanel(7418, "Phasers on Stun", panel::kPhasersOnStunRows);

}  // namespace glyphmotion
