// SPDX-License-Identifier: MIT
// Fonts of the machine: their names, their metrics, and one character at a time.
//
// Size is the cell height: ascent + descent of the face as GDI takes them (the OS/2 table's usWinAscent and
// usWinDescent), in pixels, unhinted. A character's box is its advance + em/3 wide and one cell high; the glyph starts
// em/6 to the right, its baseline at the ascent. A blank's box is em/3. A family that is missing is replaced by the
// machine's best match, a glyph that is missing by that of a face that has it; both quietly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace glyphmotion {

/// A font as an effect asks for it.
struct FontRequest {
  std::string family;   ///< UTF-8
  int cellHeight = 24;  ///< pixels, 1 and up
  bool bold = false;    ///< weight 700 instead of 400; emboldened when the family has no bold face
  bool italic = false;  ///< slanted when the family has no italic face
  friend bool operator==(const FontRequest&, const FontRequest&) = default;
};

struct FontMetrics {
  int height = 0;  ///< ascent + descent, whole pixels: what every line of this font is high
  int ascent = 0;
};

struct GlyphBox {
  double width = 0, height = 0;  ///< pixels, margins included
};

/// Coverage of one glyph in its box, rows top down.
struct GlyphBitmap {
  int width = 0, height = 0;           ///< the box, truncated to whole pixels, 1 at least
  std::vector<std::uint8_t> coverage;  ///< width * height values, 0 to 255
};

/// Starts the engine for a run; nested starts are counted. False when the machine offers no font at all.
bool StartTextEngine() noexcept;
void StopTextEngine() noexcept;

/// Every family of the machine, sorted without regard to case, no name twice.
std::vector<std::string> FontFamilies();

/// True when a family of exactly this name (case ignored) is installed, or the machine names a metric-compatible
/// stand-in for it (as Liberation Sans for Arial).
bool HasFontFamily(const std::string& family);

/// The family that a request's text is drawn with: its own when that is installed, otherwise the machine's stand-in;
/// empty when there is none. With HasGlyph, for the notes of a scripted run. (On Windows nobody asks, and neither
/// exists.)
std::string FamilyUsed(const FontRequest& font);

/// False when no font has the character, so that a face's sign for "missing" is drawn.
bool HasGlyph(const FontRequest& font, char32_t character);

FontMetrics MeasureFont(const FontRequest& font) noexcept;

/// The box of a one-character string. False when no face at all could be opened. Throws std::bad_alloc where the
/// machine reports a lack of memory.
bool MeasureGlyph(const FontRequest& font, char32_t character, GlyphBox& box);

/// The glyph on nothing: grey by coverage, or one-bit (0 and 255 only) without `antialias`. False as above, or when
/// out of memory.
bool RenderGlyph(const FontRequest& font, char32_t character, bool antialias, GlyphBitmap& glyph) noexcept;

/// The glyph's outline, filled (penWidth 0) or stroked with round joins, in the same box; for the drawing operations on
/// paths.
bool RenderGlyphOutline(const FontRequest& font, char32_t character, bool antialias, double penWidth,
                        GlyphBitmap& glyph) noexcept;

}  // namespace glyphmotion
