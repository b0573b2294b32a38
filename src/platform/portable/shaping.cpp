// SPDX-License-Identifier: MIT
// Text that cannot be drawn character by character: FriBidi puts it in order, HarfBuzz shapes it, and what comes out is
// cut into clusters.
//
// A line is split where its direction, its script or its face changes; the pieces are shaped in font units and laid out
// from left to right. Each cluster's advance is the distance between the whole pixels nearest to where it and the next
// one begin, and its glyphs keep their place between pixels, so that no rounding adds up along a line.
#include <fribidi.h>
#include <hb.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "platform/portable/clusters.h"
#include "platform/shaped_rows.h"
#include "platform/text_scripts.h"

namespace glyphmotion {
namespace {

/// A piece of a line that one face draws in one direction.
struct Piece {
  std::size_t begin = 0, end = 0;
  FriBidiLevel level = 0;
  hb_script_t script = HB_SCRIPT_COMMON;
  bool emoji = false;
  Face* face = nullptr;
  bool IsRightToLeft() const { return level & 1; }
};

/// What is known of a line's characters.
struct Line {
  std::u32string text;
  std::vector<FriBidiLevel> levels;
  std::vector<hb_script_t> scripts;
  std::vector<bool> startsGrapheme, emoji;
  std::vector<bool> joinsNext;  // the strokes of this character and the next one meet
  bool rightToLeft = false;
};

hb_unicode_funcs_t* Unicode() { return hb_unicode_funcs_get_default(); }

bool IsMark(char32_t c) {
  const hb_unicode_general_category_t category = hb_unicode_general_category(Unicode(), c);
  return category == HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK ||
         category == HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK || category == HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK;
}

// ---- Order ----

void FindLevels(Line& line) {
  const auto count = static_cast<FriBidiStrIndex>(line.text.size());
  std::vector<FriBidiChar> text(line.text.begin(), line.text.end());
  std::vector<FriBidiCharType> types(text.size());
  std::vector<FriBidiBracketType> brackets(text.size());
  fribidi_get_bidi_types(text.data(), count, types.data());
  fribidi_get_bracket_types(text.data(), count, types.data(), brackets.data());
  FriBidiParType base = FRIBIDI_PAR_ON;
  if (CurrentTextRun().options.direction == TextDirection::LeftToRight) base = FRIBIDI_PAR_LTR;
  if (CurrentTextRun().options.direction == TextDirection::RightToLeft) base = FRIBIDI_PAR_RTL;
  line.levels.assign(text.size(), 0);
  if (count == 0 ||
      !fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &base, line.levels.data())) {
    line.rightToLeft = base == FRIBIDI_PAR_RTL;
    return;
  }
  line.rightToLeft = FRIBIDI_IS_RTL(base);
  // Blanks at the end of the line lie in its own direction.
  for (std::size_t i = text.size(); i-- > 0 && FRIBIDI_IS_EXPLICIT_OR_BN_OR_WS(types[i]);) {
    line.levels[i] = line.rightToLeft ? 1 : 0;
  }
}

/// Pieces in visual order: every stretch at or above a level is reversed, from the highest level
/// down to the lowest odd one.
void OrderPieces(std::vector<Piece>& pieces) {
  FriBidiLevel highest = 0;
  for (const Piece& piece : pieces) highest = std::max(highest, piece.level);
  for (FriBidiLevel level = highest; level > 0; --level) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      std::size_t end = i;
      while (end < pieces.size() && pieces[end].level >= level) ++end;
      std::reverse(pieces.begin() + static_cast<std::ptrdiff_t>(i), pieces.begin() + static_cast<std::ptrdiff_t>(end));
      i = std::max(i, end);
    }
  }
}

// ---- Properties ----

bool IsOpenScript(hb_script_t script) {
  return script == HB_SCRIPT_COMMON || script == HB_SCRIPT_INHERITED || script == HB_SCRIPT_UNKNOWN;
}

/// Characters of no script of their own take that of the text before them, or at the beginning of that after them.
void FindScripts(Line& line) {
  line.scripts.clear();
  hb_script_t last = HB_SCRIPT_COMMON;
  for (const char32_t c : line.text) {
    const hb_script_t script = hb_unicode_script(Unicode(), c);
    if (!IsOpenScript(script)) {
      if (last == HB_SCRIPT_COMMON) std::fill(line.scripts.begin(), line.scripts.end(), script);
      last = script;
    }
    line.scripts.push_back(last);
  }
}

bool ContinuesGrapheme(std::u32string_view text, std::size_t i) {
  const char32_t c = text[i], before = text[i - 1];
  const auto isVowelOrFinalJamo = [](char32_t j) {
    return (j >= 0x1160 && j <= 0x11FF) || (j >= 0xD7B0 && j <= 0xD7FB);
  };
  if (IsMark(c) || IsEmojiTail(c) || c == 0x200C || isVowelOrFinalJamo(c)) return true;
  if (before == kJoiner) return IsEmojiByDefault(c) || (c >= 0x2190 && c <= 0x2BFF) || c >= 0x1F000;
  if (!IsRegionalIndicator(c) || !IsRegionalIndicator(before)) return false;
  std::size_t first = i;
  while (first > 0 && IsRegionalIndicator(text[first - 1])) --first;
  return (i - first) % 2 == 1;
}

void FindGraphemes(Line& line) {
  const std::size_t count = line.text.size();
  line.startsGrapheme.assign(count, true);
  line.emoji.assign(count, false);
  for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
    for (end = begin + 1; end < count && ContinuesGrapheme(line.text, end); ++end) line.startsGrapheme[end] = false;
    const bool emoji = IsEmojiSequence(std::u32string_view(line.text).substr(begin, end - begin));
    std::fill(line.emoji.begin() + static_cast<std::ptrdiff_t>(begin),
              line.emoji.begin() + static_cast<std::ptrdiff_t>(end), emoji);
  }
}

/// Scripts whose letters hang from a line that runs through a word.
bool HasHeadline(hb_script_t script) {
  return script == HB_SCRIPT_DEVANAGARI || script == HB_SCRIPT_BENGALI || script == HB_SCRIPT_GURMUKHI ||
         script == HB_SCRIPT_MODI || script == HB_SCRIPT_TIRHUTA || script == HB_SCRIPT_SHARADA;
}

bool IsLetterOf(const Line& line, std::size_t i) {
  if (IsMark(line.text[i]) || line.text[i] == kJoiner) return true;
  const hb_unicode_general_category_t category = hb_unicode_general_category(Unicode(), line.text[i]);
  return category >= HB_UNICODE_GENERAL_CATEGORY_LOWERCASE_LETTER &&
         category <= HB_UNICODE_GENERAL_CATEGORY_UPPERCASE_LETTER;
}

void FindJoins(Line& line) {
  const std::size_t count = line.text.size();
  line.joinsNext.assign(count, false);
  std::vector<FriBidiChar> text(line.text.begin(), line.text.end());
  std::vector<FriBidiJoiningType> joining(count);
  fribidi_get_joining_types(text.data(), static_cast<FriBidiStrIndex>(count), joining.data());
  for (std::size_t i = 0; i + 1 < count; ++i) {
    if (HasHeadline(line.scripts[i])) {
      line.joinsNext[i] = line.scripts[i] == line.scripts[i + 1] && IsLetterOf(line, i) && IsLetterOf(line, i + 1);
      continue;
    }
    std::size_t next = i + 1;
    while (next < count && FRIBIDI_IS_JOINING_TYPE_T(joining[next])) ++next;
    if (next == count) break;
    const bool before = FRIBIDI_IS_JOINING_TYPE_D(joining[i]) || FRIBIDI_IS_JOINING_TYPE_C(joining[i]) ||
                        FRIBIDI_IS_JOINING_TYPE_L(joining[i]);
    const bool after = FRIBIDI_IS_JOINING_TYPE_D(joining[next]) || FRIBIDI_IS_JOINING_TYPE_C(joining[next]) ||
                       FRIBIDI_IS_JOINING_TYPE_R(joining[next]);
    if (before && after)
      std::fill(line.joinsNext.begin() + static_cast<std::ptrdiff_t>(i),
                line.joinsNext.begin() + static_cast<std::ptrdiff_t>(next), true);
  }
}

// ---- Faces ----

/// Scripts that a reader expects in one hand throughout a run, so that one face is looked for that has all of it.
bool WantsOneFace(hb_script_t script) {
  return !IsOpenScript(script) && script != HB_SCRIPT_LATIN && script != HB_SCRIPT_GREEK &&
         script != HB_SCRIPT_CYRILLIC;
}

/// The face of one grapheme: an emoji's own, the selection's, one that has it; or the selection's, which shows its sign
/// for "missing".
Face* FaceOfGrapheme(Selection& selection, std::u32string_view grapheme, bool emoji) {
  Face* face = emoji ? EmojiFaceFor(selection, grapheme) : nullptr;
  if (!face) face = FaceForAll(selection, grapheme);
  if (!face) face = EmojiFaceFor(selection, grapheme);
  if (face) return face;
  for (const char32_t c : grapheme) {
    if (c > 32 && !IsSteering(c) && !FaceForAll(selection, std::u32string_view(&c, 1))) NoteMissing(c);
  }
  return selection.face;
}

/// Splits a piece of one script and direction by face.
void SplitByFace(Selection& selection, const Line& line, Piece piece, std::vector<Piece>& pieces) {
  const std::u32string_view text = line.text;
  if (!piece.emoji && WantsOneFace(piece.script)) {
    piece.face = FaceForAll(selection, text.substr(piece.begin, piece.end - piece.begin));
    if (piece.face) return pieces.push_back(piece);
  }
  const std::size_t stop = piece.end;
  for (std::size_t begin = piece.begin, end = 0; begin < stop; begin = end) {
    for (end = begin + 1; end < stop && !line.startsGrapheme[end]; ++end) {
    }
    piece.begin = begin;
    piece.end = end;
    piece.face = FaceOfGrapheme(selection, text.substr(begin, end - begin), piece.emoji);
    const bool goesOn = begin > 0 && !pieces.empty() && pieces.back().end == begin &&
                        pieces.back().face == piece.face && pieces.back().level == piece.level &&
                        pieces.back().script == piece.script && pieces.back().emoji == piece.emoji;
    if (goesOn) {
      pieces.back().end = end;
    } else {
      pieces.push_back(piece);
    }
  }
}

std::vector<Piece> PiecesOf(Selection& selection, const Line& line) {
  std::vector<Piece> pieces;
  const std::size_t count = line.text.size();
  for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
    const auto goesOn = [&](std::size_t i) {
      return line.levels[i] == line.levels[begin] && line.scripts[i] == line.scripts[begin] &&
             line.emoji[i] == line.emoji[begin];
    };
    for (end = begin + 1; end < count && (goesOn(end) || !line.startsGrapheme[end]); ++end) {
    }
    SplitByFace(selection, line, {begin, end, line.levels[begin], line.scripts[begin], line.emoji[begin], nullptr},
                pieces);
  }
  OrderPieces(pieces);
  return pieces;
}

// ---- Shapes ----

struct DestroyBuffer {
  void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};
using Buffer = std::unique_ptr<hb_buffer_t, DestroyBuffer>;

void ShapePiece(const Line& line, const Piece& piece, hb_buffer_t* buffer) {
  hb_buffer_clear_contents(buffer);
  std::vector<std::uint32_t> text(line.text.begin(), line.text.end());
  for (std::uint32_t& c : text) c = c < 32 ? 32 : c;
  hb_buffer_add_utf32(buffer, text.data(), static_cast<int>(text.size()), static_cast<unsigned>(piece.begin),
                      static_cast<int>(piece.end - piece.begin));
  hb_buffer_set_direction(buffer, piece.IsRightToLeft() ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_set_script(buffer, piece.script);
  hb_buffer_set_flags(buffer, static_cast<hb_buffer_flags_t>((piece.begin == 0 ? HB_BUFFER_FLAG_BOT : 0) |
                                                             (piece.end == text.size() ? HB_BUFFER_FLAG_EOT : 0)));
  if (hb_font_t* font = ShaperOf(*piece.face)) hb_shape(font, buffer, nullptr, 0);
  if (!hb_buffer_allocation_successful(buffer)) throw std::bad_alloc();
}

/// Lays the clusters of lines out in a row.
class RowMaker {
 public:
  RowMaker(const FontRequest& font, Selection& selection, ClusterRow& row)
      : font_(font),
        selection_(selection),
        row_(row),
        buffer_(hb_buffer_create()),
        cell_(std::max(font.cellHeight, 1)) {}

  void AddLine(const Line& line) {
    pen_ = 0;
    const std::size_t first = row_.clusters.size();
    for (const Piece& piece : PiecesOf(selection_, line)) AddPiece(line, piece);
    for (std::size_t i = first; i < row_.clusters.size(); ++i) {
      Cluster& cluster = row_.clusters[i];
      const double end = i + 1 < row_.clusters.size() ? begins_[i + 1] : pen_;
      cluster.start = Rounded(begins_[i]);
      cluster.advance = Rounded(end) - cluster.start;
      cluster.joinsRight = cluster.joinsRight && i + 1 < row_.clusters.size();
      if (cluster.joinsRight) row_.clusters[i + 1].joinsLeft = true;
      row_.text.codes.push_back(static_cast<char32_t>(i));
    }
  }

 private:
  static int Rounded(double pixels) { return static_cast<int>(std::lround(std::clamp(pixels, -1e9, 1e9))); }

  const FaceKey* KeyOf(const Face& face) {
    if (row_.faces.empty() || lastFace_ != &face) row_.faces.push_back(std::make_unique<FaceKey>(face.key));
    lastFace_ = &face;
    return row_.faces.back().get();
  }

  void AddPiece(const Line& line, const Piece& piece) {
    ShapePiece(line, piece, buffer_.get());
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer_.get(), &count);
    const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer_.get(), &count);
    // An emoji fills the cell, whatever the letters beside it do.
    const bool picture = piece.face->colour && (piece.emoji || piece.face->picturesOnly);
    const Face& sized = picture ? *piece.face : *selection_.face;
    ClusterGlyph glyph;
    glyph.face = KeyOf(*piece.face);
    glyph.em = EmOf(sized, cell_);
    glyph.embolden = !picture && font_.bold && !piece.face->bold;
    glyph.slant = !picture && font_.italic && !piece.face->italic;
    const double scale = glyph.em / piece.face->unitsPerEm, baseline = AscentOf(sized, cell_);
    for (unsigned i = 0, end = 0; i < count; i = end) {
      Cluster& cluster = BeginCluster(picture);
      for (end = i; end < count && infos[end].cluster == infos[i].cluster; ++end) {
        glyph.code = infos[end].codepoint;
        glyph.x = pen_ + places[end].x_offset * scale;
        glyph.y = baseline - places[end].y_offset * scale;
        pen_ += places[end].x_advance * scale;
        if (glyph.embolden && places[end].x_advance > 0) pen_ += glyph.em * kBoldStrength;
        cluster.glyphs.push_back(glyph);
      }
      Describe(cluster, line, piece, infos[i].cluster, NextCluster(piece, infos, count, i, end));
    }
  }

  /// The first character after those of a cluster.
  static std::size_t NextCluster(const Piece& piece, const hb_glyph_info_t* infos, unsigned count, unsigned begin,
                                 unsigned end) {
    if (piece.IsRightToLeft()) return begin > 0 ? infos[begin - 1].cluster : piece.end;
    return end < count ? infos[end].cluster : piece.end;
  }

  Cluster& BeginCluster(bool picture) {
    Cluster cluster;
    cluster.cellHeight = cell_;
    cluster.em = EmOf(*selection_.face, cell_);
    cluster.picture = picture;
    begins_.resize(row_.clusters.size());
    begins_.push_back(pen_);
    row_.clusters.push_back(std::move(cluster));
    return row_.clusters.back();
  }

  void Describe(Cluster& cluster, const Line& line, const Piece& piece, std::size_t begin, std::size_t end) {
    const char32_t c = line.text[begin];
    cluster.blank = c <= 32 || c == 0xA0;
    if (cluster.blank) cluster.glyphs.clear();
    // The box to the right holds the text after this one, or, from right to left, the text before it.
    cluster.joinsRight = piece.IsRightToLeft() ? begin > 0 && line.joinsNext[begin - 1] : line.joinsNext[end - 1];
  }

  const FontRequest& font_;
  Selection& selection_;
  ClusterRow& row_;
  Buffer buffer_;
  int cell_;
  double pen_ = 0;
  std::vector<double> begins_;  // pixels, of each cluster from its line's beginning
  const Face* lastFace_ = nullptr;
};

Line ReadLine(std::u32string_view text) {
  Line line;
  line.text = text;
  FindLevels(line);
  FindScripts(line);
  FindGraphemes(line);
  FindJoins(line);
  return line;
}

}  // namespace

ShapedText ShapeText(const FontRequest& font, std::u32string_view text) {
  if (!WantsShaping(text) || !OpenEngine()) return {std::u32string(text), {}};
  ClusterRow row;
  row.key = RowKey(font, text);
  ShapedText known;
  if (FindRow(row.key, known)) return known;
  Selection& selection = Select(font);
  if (!selection.face) return {std::u32string(text), {}};
  RowMaker maker(font, selection, row);
  ForEachLine(text, [&](std::u32string_view part) {
    if (!row.text.rightToLeft.empty()) row.text.codes.push_back(kLineBreak);
    const Line line = ReadLine(part);
    row.text.rightToLeft.push_back(line.rightToLeft);
    maker.AddLine(line);
  });
  return KeepRow(std::move(row));
}

}  // namespace glyphmotion
