// SPDX-License-Identifier: MIT
#include "text/soft_shadow.h"

#include <algorithm>
#include <cstring>

#include "image/filters.h"

namespace glyphmotion {
namespace {

// The blur reaches kReach pixels to each side. A column that far from both edges is computed from the frame's own
// pixels by the one formula of the middle, so it moves with the text; the columns nearer to an edge depend on no more
// than kBand columns from it.
constexpr int kReach = 20, kBand = 2 * kReach + 1;
constexpr int kStripText = 2 * kReach;

template <typename T>
void Add(std::string& key, const T& value) {
  key.append(reinterpret_cast<const char*>(&value), sizeof value);
}

std::string KeyOf(const TextLine& line, int y, int height, int level, int softness) {
  std::string key = line.font.family;
  key.push_back('\0');
  key.append(reinterpret_cast<const char*>(line.text.data()), line.text.size() * sizeof(char32_t));
  for (int value : {line.font.cellHeight, int{line.font.bold}, int{line.font.italic}, int{line.antialias},
                    line.characterSpace, y, height, level, softness}) {
    Add(key, value);
  }
  return key;
}

void CopyColumns(const DibView& to, int toX, const DibView& from, int fromX, int count) {
  CopyRegion(to, toX, 0, from, fromX, 0, count, to.Height());
}

}  // namespace

SoftShadowCache::SoftShadowCache(const SoftShadowCache& elder)
    : key_(elder.key_),
      whole_(DuplicateDib(elder.whole_)),
      wholeX_(elder.wholeX_),
      wholeWidth_(elder.wholeWidth_),
      strip_(DuplicateDib(elder.strip_)) {}

PackedDib SoftShadowCache::Render(const TextLine& line, const TextMeasure& measure, int x, int y, int width, int height,
                                  int level, int softness, GlyphCache& glyphs) {
  std::string key = KeyOf(line, y, height, level, softness);
  if (key == key_) {
    if (whole_ && x == wholeX_ && width == wholeWidth_) return DuplicateDib(whole_);
    if (width >= 2 * kBand) {
      PackedDib mask = Compose(line, measure, x, y, width, height, level, softness, glyphs);
      if (mask) return mask;
    }
  }
  const PackedDib sharp = RasteriseText(line, measure, x, y, width, height, level, glyphs);
  PackedDib soft = sharp ? Blur(sharp, softness) : PackedDib();
  if (key != key_) {
    key_ = std::move(key);
    strip_.Reset();
    whole_ = DuplicateDib(soft);
    wholeX_ = x;
    wholeWidth_ = width;
  }
  return soft;
}

PackedDib SoftShadowCache::Compose(const TextLine& line, const TextMeasure& measure, int x, int y, int width,
                                   int height, int level, int softness, GlyphCache& glyphs) {
  const auto blurred = [&](int left, int columns) {
    const PackedDib sharp = RasteriseText(line, measure, left, y, columns, height, level, glyphs);
    return sharp ? Blur(sharp, softness) : PackedDib();
  };
  if (!strip_) strip_ = blurred(kStripText, BlockExtent(line, measure, glyphs) + 2 * kStripText);
  PackedDib mask = BlankMask(width, height);
  const PackedDib leftBand = blurred(x, kBand), rightBand = blurred(x - (width - kBand), kBand);
  const DibView to(mask), strip(strip_), left(leftBand), right(rightBand);
  if (!to || !strip || !left || !right) return {};
  // Columns of the strip within kReach of its ends are blank, and so is everything beyond.
  const int first = std::max(kReach, x - kReach),
            last = std::min(width - kReach, x + strip.Width() - kStripText - kReach);
  if (first < last) CopyColumns(to, first, strip, first - x + kStripText, last - first);
  CopyColumns(to, 0, left, 0, kReach);
  CopyColumns(to, width - kReach, right, kBand - kReach, kReach);
  return mask;
}

}  // namespace glyphmotion
