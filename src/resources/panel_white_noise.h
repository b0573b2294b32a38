// SPDX-License-Identifier: MIT
// The panel of White Noise. Its Softness is the one value of a panel that no key keeps.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kWhiteNoiseRows = RowsOf(
    As(Role::Fill, MaterialField({kSwatches, 1}, "Light &fill:", 497, 0xFFF5E8)),
    As(Role::FillOpacity, NumberField({kNumbers, 1}, "O&pacity:", 505, "0,255,255", "Style010FillOpacity")),
    NumberField({kChecks, 1}, "Fra&mes:", 509, "2,32760,64", "Style010Frames"),
    As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 499, 0x7F7F7F)),
    As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 507, "0,255,255", "Style010ShadowOpacity")),
    As(Role::ShadowEnable, CheckBox({kChecks, 2}, "S&hadow enable", 517, "Style010ShadowEnable")),
    As(Role::Background, MaterialField({kSwatches, 3}, "&Background:", 501, 0xFFFFFF)),
    As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 511, "0,40,10", nullptr, 20)),
    As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 503, "Style010OutlineColor")),
    As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shado&w offset:", 513, "1,255,4", "Style010ShadowOffset")),
    As(Role::OutlineEnable, CheckBox({kChecks, 4}, "O&utline enable", 518, "Style010OutlineEnable")),
    As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shadow di&rection:", ControlKind::ShadowDirection, 515,
                                          "Style010ShadowDirection")),
    As(Role::Material2, MaterialField({kSwatches, 5}, "Dar&k fill:", 521, 0x001F20)),
    NumberField({kNumbers, 5}, "Random see&d:", 519, "100,32760,11234", "Style010Seed"),
    CheckBox({kChecks, 5}, "Random dela&y", 527, "Style010RandomDelay"),
    NumberField({kNumbers, 6}, "Pi&xel size:", 523, "1,8,1", "Style010Size"),
    NumberField({kNumbers, 7}, "&Interference:", 525, "0,255,160", "Style010Interference"));

}  // namespace panel

inline constexpr Panel kWhiteNoisePanel = panel::MakePanel(7410, "White Noise", panel::kWhiteNoiseRows);

}  // namespace glyphmotion
