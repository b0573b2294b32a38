// SPDX-License-Identifier: MIT
// The panel of Ripple, whose text has no shadow.
#include "resources/panel_layout.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace panel;

constexpr auto kControls = Join(MaterialField({kSwatches, 1}, "&Fill:", 135, 0xBD7E40),
                                NumberField({kChecks, 1}, "Fra&mes:", 141, "2,32760,64", "Style001Frames"),
                                MaterialField({kSwatches, 3}, "&Background:", 137, 0xFFFFFF),
                                ColourField({kSwatches, 4}, "&Outline:", 139, "Style001OutlineColor"),
                                CheckBox({kChecks, 4}, "O&utline enable", 145, "Style001OutlineEnable"),
                                NumberField({kNumbers, 5}, "Ran&ge:", 143, "8,60,48", "Style001Range"),
                                NumberField({kNumbers, 6}, "Ripple si&ze:", 146, "5,80,20", "Style001Wavesize"));

}  // namespace

const DialogTemplate kRipplePanel = {7401, "Ripple", 488, 336, kControls};

}  // namespace glyphmotion
