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
#include <string_view>
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
  // Clusters alone:
  int advance = 0;                               ///< pixels to the next box
  bool joined = false;                           ///< touches the next box: spacing must not part them
  bool blank = false;                            ///< a space
  bool picture = false;                          ///< painted by its font: RenderPictures, not RenderGlyph
  int left = 0, top = 0, right = 0, bottom = 0;  ///< what there is to see, which may lie outside the box
};

/// Coverage of one glyph in its box, rows top down.
struct GlyphBitmap {
  int left = 0, top = 0;               ///< where it begins in the box: 0 but for clusters
  int width = 0, height = 0;           ///< the box, truncated to whole pixels, 1 at least; of a cluster, what is seen
  std::vector<std::uint8_t> coverage;  ///< width * height values, 0 to 255
};

/// A picture that a font has for a glyph, in the size that it has.
struct GlyphPicture {
  int width = 0, height = 0;
  std::vector<std::uint8_t> bgra;  ///< width * height pixels times blue, green, red, alpha; colours times alpha
  bool coloured = true;            ///< false: coverage alone, in all four
  double left = 0, top = 0, shownWidth = 0, shownHeight = 0;  ///< where it is to be shown in the box, pixels
};

/// Codes from here up denote clusters of any number of characters and glyphs. They come from ShapeText, denote the same
/// throughout a run, and are measured and drawn where characters are.
constexpr char32_t kFirstCluster = 0x110000;
constexpr bool IsCluster(char32_t code) { return code >= kFirstCluster; }

/// Between the lines of a text.
constexpr char32_t kLineBreak = 0x2028;

struct ShapedText {
  std::u32string codes;           ///< each line from left to right; kLineBreak between lines
  std::vector<bool> rightToLeft;  ///< by line: the direction it is read in
};

/// The text as codes to be measured and drawn one after the other. A text whose characters can all be drawn by
/// themselves comes back as it is; any other, and any in a direction that the run asks for, is ordered (Unicode's
/// bidirectional algorithm) and shaped as a whole. Remembered for the run. Throws std::bad_alloc.
ShapedText ShapeText(const FontRequest& font, std::u32string_view text);

/// The pictures of a cluster whose box says so, in the order in which they lie on one another. False as RenderGlyph.
bool RenderPictures(const FontRequest& font, char32_t code, std::vector<GlyphPicture>& pictures) noexcept;

/// Starts the engine for a run; nested starts are counted. False when the machine offers no font at all.
bool StartTextEngine() noexcept;
void StopTextEngine() noexcept;

/// Every family of the machine, sorted without regard to case, no name twice.
std::vector<std::string> FontFamilies();

/// True when a family of exactly this name (case ignored) is installed, or the machine names a metric-compatible
/// stand-in for it (as Liberation Sans for Arial).
bool HasFontFamily(const std::string& family);

/// The name is not a family's, but a family's and a style's: "DejaVu Sans Condensed Oblique". (Not on Windows, where
/// families of one style are listed as such.)
bool IsStyledFontName(const std::string& name);

/// The family that a request's text is drawn with: its own when that is installed, otherwise the machine's stand-in;
/// empty when there is none. (On Windows nobody asks, and it does not exist.)
std::string FamilyUsed(const FontRequest& font);

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
