// SPDX-License-Identifier: MIT
// The blurred shadow mask of a run, remembered. Most effects keep the shadow where it is from frame to frame, and a
// scrolling text moves it along its rows: away from the left and right edges of the frame its blur is the same picture,
// moved.
#pragma once

#include <string>

#include "text/text_raster.h"

namespace glyphmotion {

class SoftShadowCache {
 public:
  SoftShadowCache() = default;
  /// A cache for another thread of the run, with a copy of what `elder` has.
  explicit SoftShadowCache(const SoftShadowCache& elder);
  SoftShadowCache& operator=(const SoftShadowCache&) = delete;

  /// What Blur(RasteriseText(line, measure, x, y, width, height, level), softness) gives, pixel for pixel; nothing
  /// where that gives nothing.
  PackedDib Render(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height, int level,
                   int softness, GlyphCache& glyphs);

 private:
  PackedDib Compose(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height, int level,
                    int softness, GlyphCache& glyphs);

  std::string key_;  ///< everything that the mask depends on but its column and its width
  PackedDib whole_;  ///< the mask at wholeX_ in a frame of wholeWidth_
  int wholeX_ = 0, wholeWidth_ = 0;
  PackedDib strip_;  ///< the whole text at column kStripText, with room on both sides
};

}  // namespace glyphmotion
