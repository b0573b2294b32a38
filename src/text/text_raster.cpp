// SPDX-License-Identifier: MIT
// Masks are put together in rows of bytes. A glyph is drawn once per run at full level; a lower level scales the bytes
// as the brush of that grey would have, which commutes with the maximum by which glyphs merge.
#include "text/text_raster.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/run_state.h"
#include "text/draw_op.h"
#include "text/glyph_image.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxFonts = 8, kMaxEntries = 8192, kMaxCacheBytes = std::size_t{16} << 20;

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

/// Merges the three bytes a pixel of `from` likewise.
void MergeColours(const DibView& to, const DibView& from, long long x, long long y) {
  const long long left = std::max(0LL, -x), right = std::min<long long>(from.Width(), to.Width() - x);
  const long long top = std::max(0LL, -y), bottom = std::min<long long>(from.Height(), to.Height() - y);
  if (left >= right) return;
  for (long long row = top; row < bottom; ++row) {
    MergeRow(to.Row(static_cast<int>(y + row)) + 3 * (x + left), from.Row(static_cast<int>(row)) + 3 * left,
             static_cast<int>(3 * (right - left)));
  }
}

/// Calls take(image, x, y) for every glyph of the block, with the place of its bitmap. False when one could not be
/// drawn or `take` says so.
template <typename Take>
bool ForEachGlyph(const TextLine& line, const TextMeasure& measure, GlyphCache& cache, Take take) {
  for (const TextRow& row : measure.rows) {
    long long x = row.x;
    for (std::size_t i = row.begin; i < row.end; ++i) {
      if (EndRequested()) return false;
      const GlyphImage* image = cache.Image(line.font, line.antialias, line.text[i]);
      if (!image || !take(*image, x + image->left, static_cast<long long>(row.y) + image->top)) return false;
      x += measure.advances[i];
    }
  }
  return true;
}

}  // namespace

// ---- GlyphCache ----

const GlyphCache::Font* GlyphCache::Known(const FontRequest& font) const {
  const auto known = std::find_if(fonts_.begin(), fonts_.end(), [&](const Font& f) { return f.request == font; });
  return known == fonts_.end() ? nullptr : &*known;
}

const GlyphCache::Entry* GlyphCache::Inherited(const FontRequest& font, char32_t character) const {
  const Font* known = elder_ ? elder_->Known(font) : nullptr;
  if (!known) return nullptr;
  const auto entry = known->entries.find(character);
  return entry == known->entries.end() ? nullptr : &entry->second;
}

GlyphCache::Font& GlyphCache::Find(const FontRequest& font) {
  if (const Font* known = Known(font)) return const_cast<Font&>(*known);
  if (fonts_.size() >= kMaxFonts) Forget();
  return *fonts_.insert(fonts_.end(), Font{font, kUnknown, {}});
}

GlyphCache::Entry& GlyphCache::Find(const FontRequest& font, char32_t character) {
  if (count_ >= kMaxEntries || bytes_ >= kMaxCacheBytes) Forget();
  const auto [entry, isNew] = Find(font).entries.try_emplace(character);
  if (isNew) ++count_;
  return entry->second;
}

void GlyphCache::Forget() {
  fonts_.clear();
  count_ = bytes_ = 0;
}

int GlyphCache::Height(const FontRequest& font) {
  const Font* elder = elder_ ? elder_->Known(font) : nullptr;
  if (elder && elder->height != kUnknown) return elder->height;
  Font& own = Find(font);
  if (own.height == kUnknown) own.height = MeasureFont(font).height;
  return own.height;
}

bool GlyphCache::Width(const FontRequest& font, char32_t character, int& width) {
  const Entry* elder = Inherited(font, character);
  if (elder && elder->width >= 0) {
    width = elder->width;
    return true;
  }
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

const GlyphBox* GlyphCache::Box(const FontRequest& font, char32_t cluster) {
  const Entry* elder = Inherited(font, cluster);
  if (elder && elder->width >= 0) return &elder->box;
  Entry& entry = Find(font, cluster);
  if (entry.width == kUnknown) entry.width = MeasureGlyph(font, cluster, entry.box) ? entry.box.advance : kFailed;
  return entry.width == kFailed ? nullptr : &entry.box;
}

const GlyphImage* GlyphCache::Image(const FontRequest& font, bool antialias, char32_t character) {
  const Entry* elder = Inherited(font, character);
  if (elder && elder->image[antialias ? 1 : 0].coverage) return &elder->image[antialias ? 1 : 0];
  const bool picture = IsCluster(character) && Box(font, character) && Box(font, character)->picture;
  GlyphImage& image = Find(font, character).image[antialias ? 1 : 0];
  if (!image.coverage) {
    image = picture ? DrawPictures(font, antialias, character) : DrawGlyph(font, antialias, character);
    bytes_ +=
        BlockSize(image.coverage.Handle()) + BlockSize(image.colours.Handle()) + BlockSize(image.painted.Handle());
  }
  return image.coverage ? &image : nullptr;
}

// ---- Strings ----

PackedDib RasteriseText(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                        int level, GlyphCache& cache) {
  PackedDib mask = BlankMask(width, height);
  const DibView view(mask);
  if (!view) return {};
  const bool drawn = ForEachGlyph(line, measure, cache, [&](const GlyphImage& image, long long left, long long top) {
    const DibView glyph(image.coverage);
    if (glyph) MergeGlyph(view, glyph, x + left, y + top);
    return static_cast<bool>(glyph);
  });
  if (!drawn) return {};
  ScaleMask(view, level);
  return mask;
}

TextColours RasteriseColours(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                             int level, GlyphCache& cache) {
  TextColours made{SolidDib(width, height, 0), BlankMask(width, height)};
  const DibView colours(made.colours), painted(made.painted);
  if (!colours || !painted) return {};
  const bool drawn = ForEachGlyph(line, measure, cache, [&](const GlyphImage& image, long long left, long long top) {
    if (!image.colours) return true;
    const DibView from(image.colours), share(image.painted);
    if (!from || !share) return false;
    MergeColours(colours, from, x + left, y + top);
    MergeGlyph(painted, share, x + left, y + top);
    return true;
  });
  if (!drawn) return {};
  ScaleMask(painted, level);
  for (int row = 0; level < 255 && row < height; ++row) ScaleRow(colours.Row(row), std::max(level, 0), 3 * width);
  return made;
}

int BlockExtent(const TextLine& line, const TextMeasure& measure, GlyphCache& cache) {
  long long extent = 0;
  ForEachGlyph(line, measure, cache, [&](const GlyphImage& image, long long left, long long) {
    extent = std::max(extent, left + DibView(image.coverage).Width());
    return true;
  });
  return static_cast<int>(extent);
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
