// SPDX-License-Identifier: MIT
// Text engine on the font list (which face) and FreeType (its numbers and outlines).
//
// Nothing here depends on hinting or on a face's bitmaps: advances come from the font's own units, outlines are scaled
// without hints, so that the same font file gives the same pixels everywhere. Sizes are em sizes in pixels; the em
// follows from the cell height by the primary face's window ascent and descent, and a face that lends a missing glyph
// draws it at the primary's em, on the primary's baseline.
#include "platform/text_engine.h"

#include <algorithm>
#include <cmath>

#include "platform/portable/clusters.h"
#include "platform/portable/font_list.h"
#include "platform/portable/glyph_drawing.h"
#include FT_ADVANCES_H

namespace glyphmotion {
namespace {

/// One character of one request, ready to be measured or drawn.
struct Placement {
  GlyphSpec glyph;
  bool blank = false;          // nothing to draw
  double em = 0, advance = 0;  // pixels
  int ascent = 0;              // pixels
};

bool Place(const FontRequest& font, char32_t character, Placement& place) {
  if (!OpenEngine()) return false;
  Selection& selection = Select(font);
  if (!selection.face) return false;
  place.em = EmOf(*selection.face, font.cellHeight);
  place.ascent = AscentOf(*selection.face, font.cellHeight);
  place.blank = character <= 32 || IsSteering(character);
  if (place.blank) return true;
  GlyphSpec& glyph = place.glyph;
  glyph.face = FaceFor(selection, character);
  glyph.code = GlyphOf(*glyph.face, character);
  glyph.em = place.em;
  glyph.embolden = font.bold && !glyph.face->bold;
  glyph.slant = font.italic && !glyph.face->italic;
  FT_Fixed units = 0;
  if (FT_Get_Advance(glyph.face->face.get(), glyph.code, FT_LOAD_NO_SCALE, &units)) units = 0;
  RequireMemory();
  place.advance = static_cast<double>(units) * place.em / glyph.face->unitsPerEm;
  if (glyph.embolden) place.advance += place.em * kBoldStrength;
  return true;
}

GlyphBox BoxOf(const FontRequest& font, const Placement& place) {
  GlyphBox box;
  box.width = std::max(place.advance, 0.0) + place.em / 3;
  box.height = std::max(font.cellHeight, 1);
  return box;
}

bool Draw(const FontRequest& font, char32_t character, bool antialias, double penWidth, GlyphBitmap& glyph) {
  if (const auto cluster = FindCluster(character)) return DrawCluster(*cluster, antialias, penWidth, glyph);
  Placement place;
  if (!Place(font, character, place) || !ClearBox(BoxOf(font, place), glyph)) return false;
  if (place.blank) return true;
  FT_Outline* outline = LoadOutline(place.glyph);
  RequireMemory();
  if (!outline || outline->n_points == 0) return true;  // a damaged or empty glyph is a gap, not a failure
  FT_Outline_Translate(outline, To26Dot6(place.em / 6), (glyph.height - place.ascent) * 64);
  const bool drawn = penWidth > 0 ? Stroke(*outline, penWidth, antialias, glyph) : Fill(*outline, antialias, glyph);
  RequireMemory();
  return drawn;
}

}  // namespace

bool StartTextEngine() noexcept try {
  if (!OpenEngine()) return false;
  if (CurrentTextRun().fontFile.path.empty() && !HasFonts()) return false;
  CountStart();
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void StopTextEngine() noexcept { CountStop(); }

FontMetrics MeasureFont(const FontRequest& font) noexcept try {
  const int height = std::max(font.cellHeight, 1);
  if (!OpenEngine()) return {height, height};
  const Selection& selection = Select(font);
  return {height, selection.face ? AscentOf(*selection.face, height) : height};
} catch (const std::bad_alloc&) {
  GiveUpFaces();
  return {std::max(font.cellHeight, 1), std::max(font.cellHeight, 1)};
}

bool MeasureGlyph(const FontRequest& font, char32_t character, GlyphBox& box) try {
  if (const auto cluster = FindCluster(character)) {
    box = BoxOf(*cluster);
    return true;
  }
  Placement place;
  if (!Place(font, character, place)) return false;
  box = BoxOf(font, place);
  return true;
} catch (const std::bad_alloc&) {
  GiveUpFaces();
  throw;
}

bool RenderGlyph(const FontRequest& font, char32_t character, bool antialias, GlyphBitmap& glyph) noexcept try {
  return Draw(font, character, antialias, 0, glyph);
} catch (const std::bad_alloc&) {
  return GiveUpFaces();
}

bool RenderGlyphOutline(const FontRequest& font, char32_t character, bool antialias, double penWidth,
                        GlyphBitmap& glyph) noexcept try {
  return Draw(font, character, antialias, penWidth, glyph);
} catch (const std::bad_alloc&) {
  return GiveUpFaces();
}

}  // namespace glyphmotion
