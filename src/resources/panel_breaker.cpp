// SPDX-License-Identifier: MIT
// The panel of Breaker.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 672, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 680, "0,255,255", "Style014FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 684, "2,32760,64", "Style014Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 674, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 682, "0,255,255", "Style014ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 694, "Style014ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 676, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 686, "0,40,10", "Style014Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 678, "Style014OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 688, "1,255,4", "Style014ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 695, "Style014OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 692, "Style014ShadowDirection"),
    NumberField({kNumbers, 5}, "Rotatio&n:", 690, "32,1440,720", "Style014Rotate"),
    CheckBox({kChecks, 5}, "Smooth", 696, "Style014Smooth"),
    PickerField({kDirections, 5}, "B&reaker direction:", ControlKind::ScrollTwo, 697, "Style014Scroll"));

}  // namespace

const DialogTemplate kBreakerPanel = {7414, "Breaker", 488, 336, kControls};

}  // namespace glyphmotion
