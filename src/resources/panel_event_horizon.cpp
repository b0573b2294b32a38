// SPDX-License-Identifier: MIT
// The panel of Event Horizon.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 749, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 757, "0,255,255", "Style016FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 761, "2,32760,64", "Style016Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 751, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 759, "0,255,255", "Style016ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 769, "Style016ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 753, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 763, "0,40,10", "Style016Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 755, "Style016OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 765, "1,255,4", "Style016ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 770, "Style016OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 767, "Style016ShadowDirection"),
    NumberField({kNumbers, 5}, "&Radius:", 772, "1,32,8", "Style016Radius"),
    CheckBox({kChecks, 5}, "Alter&nate universe", 771, "Style016Alternate", 76));

}  // namespace

const DialogTemplate kEventHorizonPanel = {7416, "Event Horizon", 488, 336, kControls};

}  // namespace glyphmotion
