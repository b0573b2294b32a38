// SPDX-License-Identifier: MIT
// The lines of a text and their places in the block that they form.
#include <algorithm>

#include "text/text_raster.h"

namespace glyphmotion {
namespace {

constexpr long long kWidest = 1 << 30;  // pixels, far beyond any bitmap

struct AccentPair {
  std::uint8_t accented;
  char base;
};

// The pairs of 0xDF with B and of 0xF0 with o are meant.
constexpr AccentPair kAccents[] = {
    {0xC0, 'A'}, {0xC1, 'A'}, {0xC2, 'A'}, {0xC3, 'A'}, {0xC4, 'A'}, {0xC5, 'A'}, {0xC7, 'C'}, {0xC8, 'E'}, {0xC9, 'E'},
    {0xCA, 'E'}, {0xCB, 'E'}, {0xCC, 'I'}, {0xCD, 'I'}, {0xCE, 'I'}, {0xCF, 'I'}, {0xD1, 'N'}, {0xD2, 'O'}, {0xD3, 'O'},
    {0xD4, 'O'}, {0xD5, 'O'}, {0xD6, 'O'}, {0xD8, 'O'}, {0xD9, 'U'}, {0xDA, 'U'}, {0xDB, 'U'}, {0xDC, 'U'}, {0xDD, 'Y'},
    {0xDF, 'B'}, {0xE0, 'a'}, {0xE1, 'a'}, {0xE2, 'a'}, {0xE3, 'a'}, {0xE4, 'a'}, {0xE5, 'a'}, {0xE7, 'c'}, {0xE8, 'e'},
    {0xE9, 'e'}, {0xEA, 'e'}, {0xEB, 'e'}, {0xEC, 'i'}, {0xED, 'i'}, {0xEE, 'i'}, {0xEF, 'i'}, {0xF0, 'o'}, {0xF1, 'n'},
    {0xF2, 'o'}, {0xF3, 'o'}, {0xF4, 'o'}, {0xF5, 'o'}, {0xF6, 'o'}, {0xF8, 'o'}, {0xF9, 'u'}, {0xFA, 'u'}, {0xFB, 'u'},
    {0xFC, 'u'}, {0xFD, 'y'}, {0xFF, 'y'}};
static_assert(std::size(kAccents) == 57);

char32_t BaseLetter(char32_t character) {
  for (const AccentPair& pair : kAccents) {
    if (pair.accented == character) return static_cast<char32_t>(pair.base);
  }
  return character;
}

/// What is seen of a line beyond its boxes: marks above, swashes at the ends. Pixels, 0 and up; of clusters alone.
struct Overhang {
  long long left = 0, top = 0, right = 0, bottom = 0;
};

class Layout {
 public:
  Layout(const TextLine& line, bool accentCompensation, GlyphCache& cache)
      : line_(line), accentCompensation_(accentCompensation), cache_(cache) {
    measure_.height = cache.Height(line.font);
    measure_.advances.reserve(line.text.size());
  }

  TextMeasure Make() {
    for (std::size_t begin = 0;;) {
      const std::size_t found = line_.text.find(kLineBreak, begin);
      const std::size_t end = std::min(found, line_.text.size());
      AddRow(begin, end);
      if (end == line_.text.size()) break;
      begin = end + 1;
    }
    PlaceRows();
    return std::move(measure_);
  }

 private:
  // A blank cluster or character, which justified lines stretch.
  bool IsBlank(char32_t code) {
    if (!IsCluster(code)) return code == U' ';
    const GlyphBox* box = cache_.Box(line_.font, code);
    return box && box->blank;
  }

  int Spaced(int width) const { return static_cast<int>(static_cast<long long>(width) * line_.characterSpace / 100); }

  int AdvanceOf(char32_t code, long long x, Overhang& overhang, long long& reach) {
    int width = 0;
    const GlyphBox* box = IsCluster(code) ? cache_.Box(line_.font, code) : nullptr;
    if (!box) {
      const char32_t measured = accentCompensation_ ? BaseLetter(code) : code;
      return cache_.Width(line_.font, measured, width) ? Spaced(width) : 0;
    }
    measure_.pictures |= box->picture;
    overhang.left = std::max(overhang.left, -(x + box->left));
    overhang.top = std::max<long long>(overhang.top, -box->top);
    overhang.bottom = std::max<long long>(overhang.bottom, box->bottom - measure_.height);
    reach = std::max(reach, x + box->right);
    return box->joined ? box->advance : Spaced(box->advance);
  }

  void AddRow(std::size_t begin, std::size_t end) {
    Overhang overhang;
    long long x = 0, reach = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const int advance = AdvanceOf(line_.text[i], x, overhang, reach);
      measure_.advances.push_back(advance);
      x += advance;
    }
    if (end < line_.text.size()) {
      // Every line has the blank at its end that the last one gets from the renderer.
      const int blank = AdvanceOf(U' ', x, overhang, reach);
      measure_.advances.push_back(blank);
      x += blank;
    }
    overhang.right = std::max(0LL, reach - x);
    measure_.rows.push_back({begin, end, 0, 0});
    widths_.push_back(x);
    if (measure_.rows.size() == 1) top_ = overhang.top;
    bottom_ = overhang.bottom;
    left_ = std::max(left_, overhang.left);
    right_ = std::max(right_, overhang.right);
  }

  void PlaceRows() {
    const long long widest = *std::max_element(widths_.begin(), widths_.end());
    const long long pitch = static_cast<long long>(measure_.height) * line_.lineSpace / 100;
    const long long all = left_ + widest + right_;
    for (std::size_t i = 0; i < measure_.rows.size(); ++i) {
      TextRow& row = measure_.rows[i];
      const bool rightToLeft = i < line_.rightToLeft.size() && line_.rightToLeft[i];
      const bool last = i + 1 == measure_.rows.size();
      if (line_.align == TextAlign::Justify && !last) widths_[i] += Stretch(row, widest - widths_[i]);
      const long long rest = widest - widths_[i];
      const bool right = line_.align == TextAlign::Right ||
                         (rightToLeft && (line_.align == TextAlign::Start || line_.align == TextAlign::Justify));
      row.x = static_cast<int>(std::clamp(left_ + (right                              ? rest
                                                   : line_.align == TextAlign::Centre ? rest / 2
                                                                                      : 0),
                                          -kWidest, kWidest));
      row.y = static_cast<int>(std::min(top_ + static_cast<long long>(i) * pitch, kWidest));
    }
    measure_.width = static_cast<int>(std::clamp(all, -kWidest, kWidest));
    measure_.height = static_cast<int>(std::min(measure_.rows.back().y + measure_.height + bottom_, kWidest));
  }

  /// Widens the blanks between the row's words by `more` pixels altogether; gives what was added.
  long long Stretch(const TextRow& row, long long more) {
    std::size_t first = row.begin, last = row.end;
    while (first < last && IsBlank(line_.text[first])) ++first;
    while (last > first && IsBlank(line_.text[last - 1])) --last;
    std::vector<std::size_t> blanks;
    for (std::size_t i = first; i < last; ++i) {
      if (IsBlank(line_.text[i])) blanks.push_back(i);
    }
    const auto count = static_cast<long long>(blanks.size());
    for (long long k = 0; k < count; ++k) {
      measure_.advances[blanks[static_cast<std::size_t>(k)]] +=
          static_cast<int>(more * (k + 1) / count - more * k / count);
    }
    return count ? more : 0;
  }

  const TextLine& line_;
  bool accentCompensation_;
  GlyphCache& cache_;
  TextMeasure measure_;
  std::vector<long long> widths_;  // by row
  long long left_ = 0, top_ = 0, right_ = 0, bottom_ = 0;
};

}  // namespace

TextMeasure MeasureText(const TextLine& line, bool accentCompensation, GlyphCache& cache) {
  return Layout(line, accentCompensation, cache).Make();
}

}  // namespace glyphmotion
