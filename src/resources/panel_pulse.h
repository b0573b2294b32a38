// SPDX-License-Identifier: MIT
// The panel of Pulse.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kPulseRows = RowsOf(
    As(Role::Fill, MaterialField({kSwatches, 1}, "&Fill:", 784, 0xBD7E40)),
    As(Role::FillOpacity, NumberField({kNumbers, 1}, "O&pacity:", 792, "0,255,255", "Style017FillOpacity")),
    NumberField({kChecks, 1}, "Fra&mes:", 796, "2,32760,24", "Style017Frames"),
    As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 786, 0x7F7F7F)),
    As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 794, "0,255,255", "Style017ShadowOpacity")),
    As(Role::ShadowEnable, CheckBox({kChecks, 2}, "S&hadow enable", 806, "Style017ShadowEnable")),
    As(Role::Background, MaterialField({kSwatches, 3}, "&Background:", 788, 0xFFFFFF)),
    As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 798, "0,40,10", "Style017Soft")),
    As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 790, "Style017OutlineColor")),
    As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shado&w offset:", 800, "1,255,4", "Style017ShadowOffset")),
    As(Role::OutlineEnable, CheckBox({kChecks, 4}, "O&utline enable", 807, "Style017OutlineEnable")),
    As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shadow di&rection:", ControlKind::ShadowDirection, 804,
                                          "Style017ShadowDirection")),
    NumberField({kNumbers, 5}, "&Intensity:", 802, "10,100,100", "Style017Intensity"));

}  // namespace panel

inline constexpr Panel kPulsePanel = panel::MakePanel(7417, "Pulse", panel::kPulseRows);

}  // namespace glyphmotion
