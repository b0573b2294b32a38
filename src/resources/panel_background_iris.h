// SPDX-License-Identifier: MIT
// The panel of Background Iris.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

constexpr Column kIrisEnables{107, 42}, kIrises{157, 24}, kSizes{255, 20};
constexpr const char* kIrisNames =
    "Square;Diamond;Circle;Horiz. blind;Vert. blind;Diag. left;Diag. right;Chev. left;Chev. right";

inline constexpr auto kBackgroundIrisRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "F&ill:", 624, 0xFFFFFF)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Fill opacity:", 628, "0,255,255", "Style013FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 632, "2,32760,65", "Style013Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 622, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Opacit&y:", 630, "0,255,255", "Style013ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 640, "Style013ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Background &1:", 609, 0xE4CAAF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 634, "0,40,10", "Style013Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 626, "Style013OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 636, "1,255,4", "Style013ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline en&able", 641, "Style013OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 638, "Style013ShadowDirection")),
           ComboField({kIrises, 5}, "Iris 1:", 642, kIrisNames, "Style013IrisStyle1", 62),
           NumberField({kSizes, 5}, "Size:", 644, "4,64,12", "Style013IrisSize1"),
           As(Role::Material2, MaterialField({kSwatches, 6}, "Background &2:", 611, 0xD3A97E)),
           ComboField({kIrises, 6}, "Iris 2:", 646, kIrisNames, "Style013IrisStyle2", 62),
           NumberField({kSizes, 6}, "Size:", 648, "4,64,12", "Style013IrisSize2"),
           As(Role::Material3, MaterialField({kSwatches, 7}, "Background &3:", 613, 0x996633)),
           CheckBox({kIrisEnables, 7}, "Enable", 615, "Style013BackgroundEnable3", 42),
           ComboField({kIrises, 7}, "Iris 3:", 650, kIrisNames, "Style013IrisStyle3", 62),
           NumberField({kSizes, 7}, "Size:", 652, "4,64,12", "Style013IrisSize3"),
           As(Role::Material4, MaterialField({kSwatches, 8}, "Background &4:", 616, 0xD3A97E)),
           CheckBox({kIrisEnables, 8}, "Enable", 618, "Style013BackgroundEnable4", 42),
           ComboField({kIrises, 8}, "Iris 4:", 654, kIrisNames, "Style013IrisStyle4", 62),
           NumberField({kSizes, 8}, "Size:", 656, "4,64,12", "Style013IrisSize4"),
           As(Role::Material5, MaterialField({kSwatches, 9}, "Background &5:", 619, 0x1F140A)),
           CheckBox({kIrisEnables, 9}, "Enable", 621, "Style013BackgroundEnable5", 42),
           ComboField({kIrises, 9}, "Iris 5:", 658, kIrisNames, "Style013IrisStyle5", 62),
           NumberField({kSizes, 9}, "Size:", 660, "4,64,12", "Style013IrisSize5"));

}  // namespace panel

inline constexpr Panel kBackgroundIrisPanel = panel::MakePanel(7413, "Background Iris", panel::kBackgroundIrisRows);

}  // namespace glyphmotion
