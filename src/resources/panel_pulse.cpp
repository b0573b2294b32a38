// SPDX-License-Identifier: MIT
// The panel of Pulse.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 784, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacit&y:", 792, "0,255,255", "Style017FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 796, "2,32760,24", "Style017Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 786, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 794, "0,255,255", "Style017ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 806, "Style017ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 788, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 798, "0,40,10", "Style017Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 790, "Style017OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 800, "1,255,4", "Style017ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 807, "Style017OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 804, "Style017ShadowDirection"),
    NumberField({kNumbers, 5}, "I&ntensity:", 802, "10,100,100", "Style017Intensity"));

}  // namespace

const DialogTemplate kPulsePanel = {7417, "Pulse", 488, 336, kControls};

}  // namespace glyphmotion
