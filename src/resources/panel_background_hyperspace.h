// SPDX-License-Identifier: MIT
// The panel of Background Hyperspace.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kBackgroundHyperspaceRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 709, 0xE8D1BB)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 717, "0,255,255", "Style015FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 721, "2,32760,96", "Style015Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 711, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 719, "0,255,255", "Style015ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 731, "Style015ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 713, 0x000000)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 723, "0,40,10", "Style015Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 715, "Style015OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 725, "1,255,4", "Style015ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 732, "Style015OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 729, "Style015ShadowDirection")),
           ColourField({kSwatches, 5}, "St&ar color:", 737, "Style015SparkColor"),
           NumberField({kNumbers, 5}, "Ra&ndom seed:", 733, "100,32760,22426", "Style015Seed"),
           NumberField({kNumbers, 6}, "Star densit&y:", 735, "8,255,25", "Style015Density"),
           PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollTwo, 727, "Style015Scroll"));

}  // namespace panel

inline constexpr Panel kBackgroundHyperspacePanel =
    panel::MakePanel(7415, "Background Hyperspace", panel::kBackgroundHyperspaceRows);

}  // namespace glyphmotion
