// SPDX-License-Identifier: MIT
// The panel of White Noise. Its Softness is the one value of a panel that no key keeps.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(
    MaterialField({kSwatches, 1}, "L&ight fill:", 497, 0xFFF5E8),
    NumberField({kNumbers, 1}, "Opacity:", 505, "0,255,255", "Style010FillOpacity"),
    NumberField({kChecks, 1}, "Fra&mes:", 509, "2,32760,64", "Style010Frames"),
    MaterialField({kSwatches, 2}, "&Shadow:", 499, 0x7F7F7F),
    NumberField({kNumbers, 2}, "Opacity:", 507, "0,255,255", "Style010ShadowOpacity"),
    CheckBox({kChecks, 2}, "Shadow enable", 517, "Style010ShadowEnable"),
    MaterialField({kSwatches, 3}, "Bac&kground:", 501, 0xFFFFFF),
    NumberField({kNumbers, 3}, "Softness:", 511, "0,40,10", nullptr, 20),
    ColourField({kSwatches, 4}, "&Outline:", 503, "Style010OutlineColor"),
    NumberField({kNumbers, 4}, "Shadow offset:", 513, "1,255,4", "Style010ShadowOffset"),
    CheckBox({kChecks, 4}, "Outline enable", 518, "Style010OutlineEnable"),
    PickerField({kDirections, 1}, "Shado&w direction:", ControlKind::ShadowDirection, 515, "Style010ShadowDirection"),
    MaterialField({kSwatches, 5}, "D&ark fill:", 521, 0x001F20),
    NumberField({kNumbers, 5}, "Ra&ndom seed:", 519, "100,32760,11234", "Style010Seed"),
    CheckBox({kChecks, 5}, "Random dela&y:", 527, "Style010RandomDelay"),
    NumberField({kNumbers, 6}, "Pixel size:", 523, "1,8,1", "Style010Size"),
    NumberField({kNumbers, 7}, "Inte&rference:", 525, "0,255,160", "Style010Interference"));

}  // namespace

const DialogTemplate kWhiteNoisePanel = {7410, "White Noise", 488, 336, kControls};

}  // namespace glyphmotion
