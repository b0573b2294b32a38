// SPDX-License-Identifier: MIT
// Masks are put together in rows of bytes. A glyph is drawn once per run at full level; a lower level scales the bytes
// as the brush of that grey would have, which commutes with the maximum by which glyphs merge.
#include "text/text_raster.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/run_state.h"
#include "text/draw_op.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxFonts = 8, kMaxEntries = 4096, kMaxCacheBytes = std::size_t{16} << 20;

// ---- Accents ----

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

// ---- Rows: `count` bytes each, at least 0; the arguments do not overlap ----

GLYPHMOTION_CLONES void MergeRow(std::uint8_t* __restrict out, const std::uint8_t* __restrict in, int count) {
  for (int i = 0; i < count; ++i) out[i] = std::max(out[i], in[i]);
}

GLYPHMOTION_CLONES void ScaleRow(std::uint8_t* row, int level, int count) {
  for (int i = 0; i < count; ++i) row[i] = static_cast<std::uint8_t>(Div255(row[i] * level + 127));
}

GLYPHMOTION_CLONES void MaximumRow3(std::uint8_t* __restrict out, const std::uint8_t* __restrict a,
                                    const std::uint8_t* __restrict b, const std::uint8_t* __restrict c, int count) {
  for (int i = 0; i < count; ++i) out[i] = std::max(std::max(a[i], b[i]), c[i]);
}

GLYPHMOTION_CLONES void CarveRow(std::uint8_t* __restrict ring, const std::uint8_t* __restrict text, int count) {
  for (int i = 0; i < count; ++i) ring[i] = text[i] ? static_cast<std::uint8_t>(255 - text[i]) : ring[i];
}

/// Merges a glyph whose box begins at (x, y) into the part of the mask that is inside.
void MergeGlyph(const DibView& mask, const DibView& glyph, long long x, long long y) {
  const long long left = std::max(0LL, -x), right = std::min<long long>(glyph.Width(), mask.Width() - x);
  const long long top = std::max(0LL, -y), bottom = std::min<long long>(glyph.Height(), mask.Height() - y);
  if (left >= right) return;
  for (long long row = top; row < bottom; ++row) {
    MergeRow(mask.Row(static_cast<int>(y + row)) + (x + left), glyph.Row(static_cast<int>(row)) + left,
             static_cast<int>(right - left));
  }
}

void ScaleMask(const DibView& mask, int level) {
  if (level >= 255) return;
  for (int y = 0; y < mask.Height() && !EndRequested(); ++y) ScaleRow(mask.Row(y), std::max(level, 0), mask.Width());
}

/// The 3 by 3 maximum of `source`, by columns and then by rows, into a bitmap of the same size.
void Dilate(const DibView& source, const DibView& target) {
  const int width = source.Width(), height = source.Height();
  // The columns' maximum, with a zero on either side.
  std::vector<std::uint8_t> tall(static_cast<std::size_t>(width) + 2);
  for (int y = 0; y < height && !EndRequested(); ++y) {
    MaximumRow3(tall.data() + 1, source.Row(std::max(y - 1, 0)), source.Row(y), source.Row(std::min(y + 1, height - 1)),
                width);
    MaximumRow3(target.Row(y), tall.data(), tall.data() + 1, tall.data() + 2, width);
  }
}

PackedDib CoverageBitmap(const FontRequest& font, bool antialias, char32_t character) {
  GlyphBitmap glyph;
  if (!character || !RenderGlyph(font, character, antialias, glyph)) return {};
  PackedDib bitmap = BlankMask(glyph.width, glyph.height);
  const DibView view(bitmap);
  if (!view) return {};
  const auto width = static_cast<std::size_t>(glyph.width);
  for (int y = 0; y < glyph.height; ++y) {
    std::memcpy(view.Row(y), glyph.coverage.data() + static_cast<std::size_t>(y) * width, width);
  }
  return bitmap;
}

}  // namespace

// ---- GlyphCache ----

GlyphCache::Entry& GlyphCache::Find(const FontRequest& font, char32_t character) {
  if (count_ >= kMaxEntries || bytes_ >= kMaxCacheBytes) Forget();
  auto known = std::find_if(fonts_.begin(), fonts_.end(), [&](const Font& f) { return f.request == font; });
  if (known == fonts_.end()) {
    if (fonts_.size() >= kMaxFonts) Forget();
    known = fonts_.insert(fonts_.end(), Font{font, {}});
  }
  const auto [entry, isNew] = known->entries.try_emplace(character);
  if (isNew) ++count_;
  return entry->second;
}

void GlyphCache::Forget() {
  fonts_.clear();
  count_ = bytes_ = 0;
}

bool GlyphCache::Width(const FontRequest& font, char32_t character, int& width) {
  Entry& entry = Find(font, character);
  if (entry.width == kUnknown) {
    DrawOpRecord record;
    record.op = DrawOperation::Text;
    record.textMode = TextMode::Measure;
    record.font = font;
    record.text = character;
    const DrawOpResult result = DrawOp(record);
    if (result.outOfMemory) throw std::bad_alloc();  // an advance of 0 would be another picture
    entry.width = result.done ? record.width : kFailed;
  }
  if (entry.width == kFailed) return false;
  width = entry.width;
  return true;
}

const PackedDib* GlyphCache::Coverage(const FontRequest& font, bool antialias, char32_t character) {
  PackedDib& bitmap = Find(font, character).coverage[antialias ? 1 : 0];
  if (!bitmap) {
    bitmap = CoverageBitmap(font, antialias, character);
    bytes_ += BlockSize(bitmap.Handle());
  }
  return bitmap ? &bitmap : nullptr;
}

// ---- Strings ----

TextMeasure MeasureText(const TextLine& line, bool accentCompensation, GlyphCache& cache) {
  TextMeasure measure;
  measure.height = MeasureFont(line.font).height;
  measure.advances.reserve(line.text.size());
  long long total = 0;
  for (const char32_t character : line.text) {
    int width = 0;
    const bool measured = cache.Width(line.font, accentCompensation ? BaseLetter(character) : character, width);
    const int advance = measured ? static_cast<int>(static_cast<long long>(width) * line.characterSpace / 100) : 0;
    total += advance;
    measure.advances.push_back(advance);
  }
  constexpr long long kWidest = 1 << 30;  // far beyond any bitmap
  measure.width = static_cast<int>(std::clamp(total, -kWidest, kWidest));
  return measure;
}

PackedDib RasteriseText(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                        int level, GlyphCache& cache) {
  PackedDib mask = BlankMask(width, height);
  const DibView view(mask);
  if (!view) return {};
  long long left = x;
  for (std::size_t i = 0; i < line.text.size(); ++i) {
    if (EndRequested()) return {};
    const PackedDib* coverage = cache.Coverage(line.font, line.antialias, line.text[i]);
    if (!coverage) return {};
    const DibView glyph(*coverage);
    if (!glyph) return {};
    MergeGlyph(view, glyph, left, y);
    if (i < measure.advances.size()) left += measure.advances[i];
  }
  ScaleMask(view, level);
  return mask;
}

PackedDib OutlineMask(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height, int level,
                      GlyphCache& cache) {
  constexpr int kWider = 4;
  PackedDib text = ExpandMask(RasteriseText(line, measure, x, y, width, height, 255, cache), width + kWider, height);
  PackedDib faded;
  if (level < 255) {
    faded = DuplicateDib(text);
    const DibView view(faded);
    if (!view) return {};
    ScaleMask(view, level);
  }
  PackedDib ring = DilateMask(level < 255 ? faded : text);
  const DibView ringView(ring), textView(text);
  if (!ringView || !textView) return {};
  for (int row = 0; row < height && !EndRequested(); ++row)
    CarveRow(ringView.Row(row), textView.Row(row), ringView.Width());
  return ring;
}

PackedDib ExpandMask(const PackedDib& mask, int width, int height) {
  const DibView source(mask);
  if (!source) return {};
  PackedDib expanded = BlankLike(source, width, height);
  const DibView target(expanded);
  if (!target) return {};
  if (source.Bits() < 8) {
    CopyRegion(target, 1, 0, source, 0, 0, source.Width(), source.Height());
    return expanded;
  }
  const auto bytes = static_cast<std::size_t>(source.Bits() / 8);
  const auto columns = static_cast<std::size_t>(std::min(source.Width(), width - 1));
  const int rows = std::min(source.Height(), height);
  for (int y = 0; y < rows && !EndRequested(); ++y) std::memcpy(target.Row(y) + bytes, source.Row(y), columns * bytes);
  return expanded;
}

PackedDib DilateMask(const PackedDib& mask) {
  const DibView source(mask);
  if (!source || source.Bits() != 8) return {};
  PackedDib dilated = BlankMask(source.Width(), source.Height());
  const DibView target(dilated);
  if (!target) return {};
  Dilate(source, target);
  return dilated;
}

}  // namespace glyphmotion
