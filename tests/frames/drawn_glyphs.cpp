// SPDX-License-Identifier: MIT
// A text engine without fonts: every character is a ring and a bar of its own proportions, in whole numbers. Linked in
// the place of the machine's, it gives every machine the same glyphs.
#include <cstdint>

#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

constexpr int kFine = 4;  // steps of a pixel, for coverage

struct Shape {
  int cell = 0, advance = 0, margin = 0;  // pixels
  bool blank = false, bold = false;
};

Shape ShapeOf(const FontRequest& font, char32_t character) {
  const int cell = font.cellHeight < 1 ? 1 : font.cellHeight;
  Shape shape;
  shape.cell = cell;
  shape.margin = cell / 6;
  shape.blank = character == U' ';
  shape.bold = font.bold;
  shape.advance = shape.blank ? 0 : cell * (4 + static_cast<int>(character % 4)) / 8;
  return shape;
}

// A place in fine steps.
bool Covers(const Shape& shape, int x, int y) {
  const std::int64_t width = shape.advance * kFine, height = shape.cell * kFine / 2;
  if (shape.blank || width < 1 || height < 1) return false;
  const std::int64_t left = shape.margin * kFine, top = shape.cell * kFine / 4;
  const std::int64_t u = 2 * (x - left) + 1 - width, v = 2 * (y - top) + 1 - height;  // from the middle, doubled
  const std::int64_t distance = u * u * height * height + v * v * width * width,
                     whole = width * width * height * height;
  const bool ring = distance <= whole && distance * (shape.bold ? 4 : 2) >= whole;
  const bool bar = x >= left && x < left + width / (shape.bold ? 4 : 6) && y >= top / 2 && y < top + height;
  return ring || bar;
}

// Where the shape begins or ends within `reach` fine steps.
bool CoversEdge(const Shape& shape, int x, int y, int reach) {
  const bool here = Covers(shape, x, y);
  return here != Covers(shape, x - reach, y) || here != Covers(shape, x + reach, y) ||
         here != Covers(shape, x, y - reach) || here != Covers(shape, x, y + reach);
}

void Draw(const Shape& shape, bool antialias, int reach, GlyphBitmap& glyph) {
  glyph.width = shape.advance + 2 * shape.margin < 1 ? 1 : shape.advance + 2 * shape.margin;
  glyph.height = shape.cell;
  glyph.coverage.assign(static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height), 0);
  std::size_t at = 0;
  for (int y = 0; y < glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      int count = 0;
      for (int i = 0; i < kFine * kFine; ++i) {
        const int fineX = x * kFine + i % kFine, fineY = y * kFine + i / kFine;
        count += reach ? CoversEdge(shape, fineX, fineY, reach) : Covers(shape, fineX, fineY);
      }
      const int level = count * 255 / (kFine * kFine);
      glyph.coverage[at++] = static_cast<std::uint8_t>(antialias ? level : level < 128 ? 0 : 255);
    }
  }
}

}  // namespace

bool StartTextEngine() noexcept { return true; }
void StopTextEngine() noexcept {}
std::vector<std::string> FontFamilies() { return {"Arial"}; }
bool HasFontFamily(const std::string& family) { return family == "Arial"; }
FontMetrics MeasureFont(const FontRequest& font) noexcept {
  return {font.cellHeight < 1 ? 1 : font.cellHeight, font.cellHeight * 3 / 4};
}

bool MeasureGlyph(const FontRequest& font, char32_t character, GlyphBox& box) {
  const Shape shape = ShapeOf(font, character);
  box.width = shape.advance + 2 * shape.margin;
  box.height = shape.cell;
  return true;
}

bool RenderGlyph(const FontRequest& font, char32_t character, bool antialias, GlyphBitmap& glyph) noexcept {
  Draw(ShapeOf(font, character), antialias, 0, glyph);
  return true;
}

bool RenderGlyphOutline(const FontRequest& font, char32_t character, bool antialias, double penWidth,
                        GlyphBitmap& glyph) noexcept {
  const int reach = static_cast<int>(penWidth * kFine / 2);
  Draw(ShapeOf(font, character), antialias, penWidth > 0 && reach < 1 ? 1 : reach, glyph);
  return true;
}

}  // namespace glyphmotion
