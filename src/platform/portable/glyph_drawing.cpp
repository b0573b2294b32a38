// SPDX-License-Identifier: MIT
#include "platform/portable/glyph_drawing.h"

#include <algorithm>
#include <cmath>
#include FT_STROKER_H

namespace glyphmotion {
namespace {

constexpr double kMaxBoxSide = 16384;  // pixels; FreeType's rasters count in 16 bits

bool IsOutlineInReach(const FT_Outline& outline) {
  FT_BBox box;
  FT_Outline_Get_CBox(&outline, &box);
  constexpr FT_Pos kReach = 32000 * 64;
  return box.xMin > -kReach && box.yMin > -kReach && box.xMax < kReach && box.yMax < kReach;
}

struct StrokeOutline {
  FT_Stroker stroker = nullptr;
  FT_Outline outline{};
  bool made = false;
  ~StrokeOutline() {
    if (made) FT_Outline_Done(FreeTypeLibrary(), &outline);
    if (stroker) FT_Stroker_Done(stroker);
  }
};

}  // namespace

FT_Outline* LoadOutline(const GlyphSpec& glyph) {
  Face& face = *glyph.face;
  FT_Face ft = face.face.get();
  const FT_F26Dot6 size = std::max<FT_F26Dot6>(To26Dot6(glyph.em), 1);
  if (face.size != size) {
    face.size = 0;
    if (FT_Set_Char_Size(ft, size, size, 72, 72)) return nullptr;
    face.size = size;
  }
  constexpr FT_Int32 kFlags = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;
  if (FT_Load_Glyph(ft, glyph.code, kFlags) || ft->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return nullptr;
  FT_Outline& outline = ft->glyph->outline;
  // Wider only, so that nothing grows out of the cell.
  if (glyph.embolden) FT_Outline_EmboldenXY(&outline, To26Dot6(glyph.em * kBoldStrength), 0);
  if (glyph.slant) {
    const FT_Matrix slanted = {0x10000, static_cast<FT_Fixed>(kSlant * 0x10000), 0, 0x10000};
    FT_Outline_Transform(&outline, &slanted);
  }
  return &outline;
}

bool Fill(FT_Outline& outline, bool antialias, GlyphBitmap& glyph) {
  if (!IsOutlineInReach(outline)) return false;
  FT_Bitmap bitmap{};
  bitmap.rows = static_cast<unsigned>(glyph.height);
  bitmap.width = static_cast<unsigned>(glyph.width);
  if (antialias) {
    bitmap.pitch = glyph.width;
    bitmap.buffer = glyph.coverage.data();
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    bitmap.num_grays = 256;
    return !FT_Outline_Get_Bitmap(FreeTypeLibrary(), &outline, &bitmap);
  }
  bitmap.pitch = (glyph.width + 7) / 8;
  std::vector<std::uint8_t> bits(static_cast<std::size_t>(bitmap.pitch) * bitmap.rows);
  bitmap.buffer = bits.data();
  bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
  if (FT_Outline_Get_Bitmap(FreeTypeLibrary(), &outline, &bitmap)) return false;
  for (int y = 0; y < glyph.height; ++y) {
    const std::uint8_t* row = bits.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap.pitch);
    std::uint8_t* out = glyph.coverage.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(glyph.width);
    for (int x = 0; x < glyph.width; ++x) out[x] = row[x >> 3] & (0x80 >> (x & 7)) ? 255 : 0;
  }
  return true;
}

bool Stroke(FT_Outline& outline, double penWidth, bool antialias, GlyphBitmap& glyph) {
  StrokeOutline stroke;
  FT_Library library = FreeTypeLibrary();
  if (FT_Stroker_New(library, &stroke.stroker)) return false;
  FT_Stroker_Set(stroke.stroker, To26Dot6(penWidth / 2), FT_STROKER_LINECAP_ROUND, FT_STROKER_LINEJOIN_ROUND, 0);
  FT_UInt points = 0, contours = 0;
  if (FT_Stroker_ParseOutline(stroke.stroker, &outline, 0) ||
      FT_Stroker_GetCounts(stroke.stroker, &points, &contours) || points > 0x7FFF || contours > 0x7FFF ||
      FT_Outline_New(library, points, static_cast<FT_Int>(contours), &stroke.outline)) {
    return false;
  }
  stroke.made = true;
  stroke.outline.n_points = 0;
  stroke.outline.n_contours = 0;
  FT_Stroker_Export(stroke.stroker, &stroke.outline);
  const bool filled = Fill(stroke.outline, antialias, glyph);
  stroke.outline.n_points = static_cast<short>(points);
  return filled;
}

bool ClearBox(const GlyphBox& box, GlyphBitmap& glyph) {
  if (box.width > kMaxBoxSide || box.height > kMaxBoxSide) return false;
  glyph.width = std::max(static_cast<int>(box.width), 1);
  glyph.height = std::max(static_cast<int>(box.height), 1);
  glyph.coverage.assign(static_cast<std::size_t>(glyph.width) * static_cast<std::size_t>(glyph.height), 0);
  return true;
}

}  // namespace glyphmotion
