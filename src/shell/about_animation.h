// SPDX-License-Identifier: MIT
// The small animation beside the buttons, and the banner of the about box: the program's name on a night sky, its
// letters rising and falling one after another while a gleam wanders through them.
#pragma once

#include <vector>

#include "platform/dialog.h"
#include "platform/text_engine.h"

namespace glyphmotion {

constexpr int kAboutPeriod = 64;        ///< ticks from a picture to the same one again
constexpr int kAboutMilliseconds = 60;  ///< a tick

/// The letters, rendered once for a size of the picture.
struct AboutLetters {
  int cellHeight = 0;
  std::vector<GlyphBitmap> glyphs;
  std::vector<double> places;  ///< left edges of the glyphs' boxes
  double width = 0;
};

/// One picture as large as the request, `tick` ticks on. `letters` belongs to the caller and is made anew when the size
/// is another. Without a font there is only the sky. Cost: a few operations a pixel.
void PaintAboutPicture(const DrawRequest& request, AboutLetters& letters, unsigned tick);

/// A tick of the timer that moves a control's picture: repaints it, or ends the timer when the control is hidden.
void RunAboutTimer(Dialog& dialog, int timer, int control);

}  // namespace glyphmotion
