// SPDX-License-Identifier: MIT
// From a string and a font to masks. Text is never drawn as a whole: each character is measured by itself and
// rasterised by itself, which is what makes Character space and the per-character effects possible.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "image/packed_dib.h"
#include "platform/text_engine.h"
#include "platform/text_run.h"

namespace glyphmotion {

struct TextLine {
  FontRequest font;
  bool antialias = true;
  std::u32string text;       ///< characters and clusters, with the blank that renderers append
  int characterSpace = 100;  ///< percent of each advance
  // Of several lines:
  TextAlign align = TextAlign::Start;
  int lineSpace = 100;                 ///< percent of the font's height from line to line
  std::vector<bool> rightToLeft = {};  ///< by line; a line beyond its end is read from left to right
};

/// One line of a block.
struct TextRow {
  std::size_t begin = 0, end = 0;  ///< of its characters, the break left out
  int x = 0, y = 0;                ///< pixels from the block's corner to its first box
};

struct TextMeasure {
  int width = 0, height = 0;  ///< pixels: of one line the sum of the advances and the font's height; of the block
  std::vector<int> advances;  ///< one a character, trailing blank included
  std::vector<TextRow> rows;
  bool pictures = false;  ///< some clusters are painted by their font
};

/// A glyph as it is merged into masks.
struct GlyphImage {
  int left = 0, top = 0;  ///< in its box
  PackedDib coverage;     ///< 8 bits
  PackedDib colours;      ///< 24 bits, times what is painted; empty but for glyphs that their font paints
  PackedDib painted;      ///< 8 bits: how much of the coverage has these colours
};

/// Glyphs and boxes of one run, so that each is made once, by font. Bounded (8 fonts, 8192 characters, 16 MiB): when it
/// is full it forgets all.
class GlyphCache {
 public:
  GlyphCache() = default;
  /// A cache for another thread of the run. What `elder` has is read there; nobody may change it meanwhile.
  explicit GlyphCache(const GlyphCache* elder) : elder_(elder) {}

  /// The font's cell height in pixels.
  int Height(const FontRequest& font);
  /// The box's width in whole pixels as mode Measure gives it; false when the measure failed.
  bool Width(const FontRequest& font, char32_t character, int& width);
  /// A cluster's box; null when the measure failed. Valid until the next call.
  const GlyphBox* Box(const FontRequest& font, char32_t cluster);
  /// The glyph: its coverage is what mode Glyph gives for a brush at full level. Null when it could not be drawn.
  /// Valid until the next call.
  const GlyphImage* Image(const FontRequest& font, bool antialias, char32_t character);

 private:
  static constexpr int kUnknown = -1, kFailed = -2;
  struct Entry {
    int width = kUnknown;
    GlyphBox box;         // of a cluster
    GlyphImage image[2];  // one-bit, antialiased
  };
  struct Font {
    FontRequest request;
    int height = kUnknown;
    std::unordered_map<char32_t, Entry> entries;
  };
  const Font* Known(const FontRequest& font) const;
  /// The elder's entry, or null.
  const Entry* Inherited(const FontRequest& font, char32_t character) const;
  Font& Find(const FontRequest& font);
  Entry& Find(const FontRequest& font, char32_t character);
  void Forget();

  const GlyphCache* elder_ = nullptr;
  std::vector<Font> fonts_;
  std::size_t count_ = 0, bytes_ = 0;  // entries; bytes of coverage
};

/// Total width, height and advances. With accent compensation an accented Latin-1 letter is as wide as its base letter.
/// Characters that cannot be measured have no width. Never fails.
TextMeasure MeasureText(const TextLine& line, bool accentCompensation, GlyphCache& cache);

/// A new mask of width x height with the first character's box at (x, y); glyphs merge by maximum; `level` (0 to 255)
/// scales the coverage. Empty when a character could not be drawn or out of memory.
PackedDib RasteriseText(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                        int level, GlyphCache& cache);

/// The colours of the clusters that their font paints, in a picture of width x height, as RasteriseText places their
/// coverage.
struct TextColours {
  PackedDib colours;  ///< 24 bits, times what is painted and times the level
  PackedDib painted;  ///< 8 bits
};
/// Nothing in it when it could not be made.
TextColours RasteriseColours(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                             int level, GlyphCache& cache);

/// Where the rightmost box of the block ends, in pixels from its corner.
int BlockExtent(const TextLine& line, const TextMeasure& measure, GlyphCache& cache);

/// The ring around the text at (x, y), four pixels wider than asked, its columns one to the right of the frame's.
/// Inside the letters it holds 255 minus the coverage, so that antialiased edges complement the fill.
PackedDib OutlineMask(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height, int level,
                      GlyphCache& cache);

/// A blank bitmap of the size, with the source one pixel to the right.
PackedDib ExpandMask(const PackedDib& mask, int width, int height);

/// 3 by 3 maximum, as a new mask of the same size.
PackedDib DilateMask(const PackedDib& mask);

}  // namespace glyphmotion
