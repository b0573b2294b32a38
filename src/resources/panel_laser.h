// SPDX-License-Identifier: MIT
// The panel of Laser.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kLaserRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 282, 0x33CC33)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 290, "0,255,255", "Style005FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 294, "2,32760,64", "Style005Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 284, 0xB2B2B2)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 292, "0,255,255", "Style005ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 304, "Style005ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 286, 0x000000)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 296, "0,40,10", "Style005Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 288, "Style005OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 298, "1,255,4", "Style005ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 305, "Style005OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 302, "Style005ShadowDirection")),
           ColourField({kSwatches, 5}, "Beam colo&r:", 308, "Style005BeamColor"),
           CheckBox({kEnables, 5}, "Enable", 314, "Style005FillEnable", 42),
           TwoLineLabel(ColourField({kSwatches, 6}, "Beam outli&ne color:", 312, "Style005BeamOutColor")),
           CheckBox({kEnables, 6}, "Enable", 315, "Style005OutEnable", 42),
           NumberField({kNumbers, 7}, "Be&am size:", 306, "1,16,6", "Style005BeamSize"),
           CheckBox({kChecks, 7}, "Fatten outline beam", 316, "Style005Fatten", 84),
           NumberField({kNumbers, 8}, "Beam diffusion:", 310, "0,40,16", "Style005BeamSoft"),
           PickerField({kDirections, 5}, "Scroll:", ControlKind::ScrollTwo, 300, "Style005Scroll"));

}  // namespace panel

inline constexpr Panel kLaserPanel = panel::MakePanel(7405, "Laser", panel::kLaserRows);

}  // namespace glyphmotion
