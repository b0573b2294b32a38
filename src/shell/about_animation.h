// SPDX-License-Identifier: MIT
// The small animation beside the buttons, and the banner of the about box: the program's name on a night sky, its
// letters rising and falling one after another while a gleam wanders through them.
#pragma once

#include <vector>

#include "platform/dialog.h"
#include "platform/text_engine.h"

namespace glyphmotion {

constexpr int kAboutPeriod = 64;        ///< ticks until the animation repeats
constexpr int kAboutMilliseconds = 60;  ///< the length of a tick

/// The letters, rendered once per picture size.
struct AboutLetters {
  int cellHeight = 0;
  std::vector<GlyphBitmap> glyphs;
  std::vector<double> places;  ///< left edges of the glyphs' boxes
  double width = 0;
};

/// Paints the picture at `tick`, at the size of the request. `letters` is the caller's cache, rendered again when the
/// size changes. Without a font there is only the sky. Cost: a few operations per pixel.
void PaintAboutPicture(const DrawRequest& request, AboutLetters& letters, unsigned tick);

/// Handles a tick of a control's animation timer: repaints it, or stops the timer when the control is hidden.
void RunAboutTimer(Dialog& dialog, int timer, int control);

}  // namespace glyphmotion
