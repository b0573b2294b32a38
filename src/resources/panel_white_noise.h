// SPDX-License-Identifier: MIT
// The panel of White Noise. Its Softness is the one value of a panel that no key keeps.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kWhiteNoiseRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "L&ight fill:", 497, 0xFFF5E8)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 505, "0,255,255", "Style010FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 509, "2,32760,64", "Style010Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 499, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 507, "0,255,255", "Style010ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 517, "Style010ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 501, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 511, "0,40,10", nullptr, 20)),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 503, "Style010OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 513, "1,255,4", "Style010ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 518, "Style010OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 515, "Style010ShadowDirection")),
           As(Role::Material2, MaterialField({kSwatches, 5}, "D&ark fill:", 521, 0x001F20)),
           NumberField({kNumbers, 5}, "Ra&ndom seed:", 519, "100,32760,11234", "Style010Seed"),
           CheckBox({kChecks, 5}, "Random dela&y:", 527, "Style010RandomDelay"),
           NumberField({kNumbers, 6}, "Pixel size:", 523, "1,8,1", "Style010Size"),
           NumberField({kNumbers, 7}, "Inte&rference:", 525, "0,255,160", "Style010Interference"));

}  // namespace panel

inline constexpr Panel kWhiteNoisePanel = panel::MakePanel(7410, "White Noise", panel::kWhiteNoiseRows);

}  // namespace glyphmotion
