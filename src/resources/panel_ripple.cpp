// SPDX-License-Identifier: MIT
// The panel of Ripple, whose text has no shadow.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(MaterialField({kSwatches, 1}, "F&ill:", 135, 0xBD7E40),
                                NumberField({kChecks, 1}, "Fra&mes:", 141, "2,32760,64", "Style001Frames"),
                                MaterialField({kSwatches, 3}, "Bac&kground:", 137, 0xFFFFFF),
                                ColourField({kSwatches, 4}, "&Outline:", 139, "Style001OutlineColor"),
                                CheckBox({kChecks, 4}, "Outline en&able", 145, "Style001OutlineEnable"),
                                NumberField({kNumbers, 5}, "Ra&nge:", 143, "8,60,48", "Style001Range"),
                                NumberField({kNumbers, 6}, "&Ripple size:", 146, "5,80,20", "Style001Wavesize"));

}  // namespace

const DialogTemplate kRipplePanel = {7401, "Ripple", 488, 336, kControls};

}  // namespace glyphmotion
