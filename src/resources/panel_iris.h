// SPDX-License-Identifier: MIT
// The panel of Iris.
#pragma once

#include "resources/panel_layout.h"

namespace glyphmotion {
namespace panel {

constexpr Column kIrisEnables{107, 42}, kIrises{157, 24}, kSizes{255, 20};
constexpr const char* kIrisNames =
    "Square;Diamond;Circle;Horiz. blind;Vert. blind;Diag. left;Diag. right;Chev. left;Chev. right";

inline constexpr auto kIrisRows =
    RowsOf(As(Role::Fill, MaterialField({kSwatches, 1}, "Fill &1:", 158, 0xE4CAAF)),
           As(Role::FillOpacity, NumberField({kNumbers, 1}, "Opacit&y:", 177, "0,255,255", "Style002FillOpacity")),
           NumberField({kChecks, 1}, "Fra&mes:", 181, "2,32760,65", "Style002Frames"),
           As(Role::Shadow, MaterialField({kSwatches, 2}, "&Shadow:", 171, 0x7F7F7F)),
           As(Role::ShadowOpacity, NumberField({kNumbers, 2}, "Op&acity:", 179, "0,255,255", "Style002ShadowOpacity")),
           As(Role::ShadowEnable, CheckBox({kChecks, 2}, "Shadow enable", 189, "Style002ShadowEnable")),
           As(Role::Background, MaterialField({kSwatches, 3}, "Bac&kground:", 173, 0xFFFFFF)),
           As(Role::Softness, NumberField({kNumbers, 3}, "Soft&ness:", 183, "0,40,10", "Style002Soft")),
           As(Role::Outline, ColourField({kSwatches, 4}, "&Outline:", 175, "Style002OutlineColor")),
           As(Role::ShadowOffset, NumberField({kNumbers, 4}, "Shadow offset:", 185, "1,255,4", "Style002ShadowOffset")),
           As(Role::OutlineEnable, CheckBox({kChecks, 4}, "Outline enable", 190, "Style002OutlineEnable")),
           As(Role::ShadowDirection, PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection,
                                                 187, "Style002ShadowDirection")),
           ComboField({kIrises, 5}, "Iris 1:", 191, kIrisNames, "Style002IrisStyle1", 62),
           NumberField({kSizes, 5}, "Size:", 193, "4,64,12", "Style002IrisSize1"),
           As(Role::Material2, MaterialField({kSwatches, 6}, "Fill &2:", 160, 0xD3A97E)),
           ComboField({kIrises, 6}, "Iris 2:", 195, kIrisNames, "Style002IrisStyle2", 62),
           NumberField({kSizes, 6}, "Size:", 197, "4,64,12", "Style002IrisSize2"),
           As(Role::Material3, MaterialField({kSwatches, 7}, "Fill &3:", 162, 0x996633)),
           CheckBox({kIrisEnables, 7}, "Enable", 164, "Style002FillEnable3", 42),
           ComboField({kIrises, 7}, "Iris 3:", 199, kIrisNames, "Style002IrisStyle3", 62),
           NumberField({kSizes, 7}, "Size:", 201, "4,64,12", "Style002IrisSize3"),
           As(Role::Material4, MaterialField({kSwatches, 8}, "Fill &4:", 165, 0xD3A97E)),
           CheckBox({kIrisEnables, 8}, "Enable", 167, "Style002FillEnable4", 42),
           ComboField({kIrises, 8}, "Iris 4:", 203, kIrisNames, "Style002IrisStyle4", 62),
           NumberField({kSizes, 8}, "Size:", 205, "4,64,12", "Style002IrisSize4"),
           As(Role::Material5, MaterialField({kSwatches, 9}, "Fill &5:", 168, 0x1F140A)),
           CheckBox({kIrisEnables, 9}, "Enable", 170, "Style002FillEnable5", 42),
           ComboField({kIrises, 9}, "Iris 5:", 207, kIrisNames, "Style002IrisStyle5", 62),
           NumberField({kSizes, 9}, "Size:", 209, "4,64,12", "Style002IrisSize5"));

}  // namespace panel

inline constexpr Panel kIrisPanel = panel::MakePanel(7402, "Iris", panel::kIrisRows);

}  // namespace glyphmotion
