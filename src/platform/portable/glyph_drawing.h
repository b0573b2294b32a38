// SPDX-License-Identifier: MIT
// Outlines and coloured pictures of single glyphs, and outlines as coverage.
#pragma once

#include <cmath>

#include "platform/portable/text_faces.h"
#include FT_OUTLINE_H

namespace glyphmotion {

inline FT_F26Dot6 To26Dot6(double pixels) { return static_cast<FT_F26Dot6>(std::lround(pixels * 64)); }

/// One glyph of a face at a size.
struct GlyphSpec {
  Face* face = nullptr;
  FT_UInt code = 0;
  double em = 0;  ///< pixels
  bool embolden = false, slant = false;
};

/// Loads the glyph's outline into its face's slot, emboldened and slanted where the face is not, with its origin at
/// (0, 0). Null when there is none.
FT_Outline* LoadOutline(const GlyphSpec& glyph);

/// Fills the outline, whose origin is the lower left corner, into the bitmap; what lies outside falls away.
bool Fill(FT_Outline& outline, bool antialias, GlyphBitmap& glyph);
/// Strokes it with round joins.
bool Stroke(FT_Outline& outline, double penWidth, bool antialias, GlyphBitmap& glyph);

/// A cleared bitmap of the box; false when it is too large to draw.
bool ClearBox(const GlyphBox& box, GlyphBitmap& glyph);

/// The glyph as its font paints it, placed with its origin at (0, 0), rows counted downwards. False when there is
/// nothing to see.
bool LoadPicture(const GlyphSpec& glyph, GlyphPicture& picture);

}  // namespace glyphmotion
