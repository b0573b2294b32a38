// SPDX-License-Identifier: MIT
// One glyph of the text engine as bitmaps.
#pragma once

#include "text/text_raster.h"

namespace glyphmotion {

/// The glyph's coverage; an image without one when it could not be drawn.
GlyphImage DrawGlyph(const FontRequest& font, bool antialias, char32_t character);

/// A cluster that its font paints, scaled to its place. Where the run wants no colours it has its shape alone.
GlyphImage DrawPictures(const FontRequest& font, bool antialias, char32_t cluster);

}  // namespace glyphmotion
