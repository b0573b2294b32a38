// SPDX-License-Identifier: MIT
// The panel of Elastic.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 575, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 583, "0,255,255", "Style012FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 587, "2,32760,64", "Style012Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 577, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 585, "0,255,255", "Style012ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 595, "Style012ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 579, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Soft&ness:", 589, "0,40,10", "Style012Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 581, "Style012OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 591, "1,255,4", "Style012ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 596, "Style012OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 593, "Style012ShadowDirection"),
    NumberField({kNumbers, 5}, "Ene&rgy:", 597, "5,100,20", "Style012Energy"));

}  // namespace

const DialogTemplate kElasticPanel = {7412, "Elastic", 488, 336, kControls};

}  // namespace glyphmotion
