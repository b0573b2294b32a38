// SPDX-License-Identifier: MIT
// The panel of Nebula.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 244, 0xBD7E40),
    NumberField({kNumbers, 1}, "Opacity:", 252, "0,255,255", "Style004FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 256, "2,32760,64", "Style004Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 246, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 254, "0,255,255", "Style004ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 264, "Style004ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 248, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 258, "0,40,10", "Style004Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 250, "Style004OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 260, "1,255,4", "Style004ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 265, "Style004OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 262, "Style004ShadowDirection"),
    NumberField({kNumbers, 5}, "Ra&ndom seed:", 266, "100,32760,12385", "Style004Seed"),
    CheckBox({kChecks, 5}, "F&ade text", 270, "Style004Fadetext"),
    NumberField({kNumbers, 6}, "Nebula size:", 268, "8,72,32", "Style004Size"),
    CheckBox({kChecks, 6}, "Appl&y to shadow", 271, "Style004Scrambleshadow", 76));

}  // namespace

const DialogTemplate kNebulaPanel = {7404, "Nebula", 488, 336, kControls};

}  // namespace glyphmotion
