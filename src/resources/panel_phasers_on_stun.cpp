// SPDX-License-Identifier: MIT
// The panel of Phasers on Stun.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "F&ill:", 818, 0x000000),
    NumberField({kNumbers, 1}, "Opacity:", 840, "0,255,255", "Style018FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 844, "2,32760,32", "Style018Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 834, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Op&acity:", 842, "0,255,255", "Style018ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 852, "Style018ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 836, 0x000000),
    NumberField({kNumbers, 3}, "Soft&ness:", 846, "0,40,10", "Style018Soft"),
    ColourField({kSwatches, 4}, "&Outline:", 838, "Style018OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 848, "1,255,4", "Style018ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 853, "Style018OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 850, "Style018ShadowDirection"),
    ColourField({kSwatches, 5}, "Beam &1:", 820, "Style018BeamColor1"),
    NumberField({kNumbersRight, 5}, "Seed:", 854, "100,32760,16252", "Style018Seed"),
    ColourField({kSwatches, 6}, "Beam &2:", 822, "Style018BeamColor2"),
    CheckBox({kEnables, 6}, "Enable", 824, "Style018BeamEnable2", 42),
    NumberField({kNumbersRight, 6}, "Densit&y:", 856, "16,2048,96", "Style018Density"),
    ColourField({kSwatches, 7}, "Beam &3:", 825, "Style018BeamColor3"),
    CheckBox({kEnables, 7}, "Enable", 827, "Style018BeamEnable3", 42),
    NumberField({kNumbersRight, 7}, "Beam powe&r:", 858, "1,8,3", "Style018Beamsize"),
    ColourField({kSwatches, 8}, "Beam &4:", 828, "Style018BeamColor4"),
    CheckBox({kEnables, 8}, "Enable", 830, "Style018BeamEnable4", 42),
    ColourField({kSwatches, 9}, "Beam &5:", 831, "Style018BeamColor5"),
    CheckBox({kEnables, 9}, "Enable", 833, "Style018BeamEnable5", 42));

}  // namespace

const DialogTemplate kPhasersOnStunPanel = {7418, "Phasers on Stun", 488, 336, kControls};

}  // namespace glyphmotion
