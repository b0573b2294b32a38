// SPDX-License-Identifier: MIT
// The panel of Hyperspace.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

inline constexpr auto kHyperspaceRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 327, 0x664422)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacity:", 335, "0,255,255", "Style006FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 339, "2,32760,96", "Style006Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 329, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacity:", 337, "0,255,255", "Style006ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 349, "Style006ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 331, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Softness:", 341, "0,40,10", "Style006Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 333, "Style006OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 343, "1,255,4", "Style006ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 350, "Style006OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 347, "Style006ShadowDirection")),
           ColourField({kSwatches, 5}, "St&ar color:", 355, "Style006SparkColor"),
           NumberField({kNumbers, 5}, "Ra&ndom seed:", 351, "100,32760,22421", "Style006Seed"),
           NumberField({kNumbers, 6}, "Star densit&y:", 353, "8,255,40", "Style006Density"),
           PickerField({kDirections, 5}, "Sc&roll:", ControlKind::ScrollTwo, 345, "Style006Scroll"));

}  // namespace panel

inline constexpr Panel kHyperspacePanel = panel::MakePanel(7406, "Hyperspace", panel::kHyperspaceRows);

}  // namespace glyphmotion
