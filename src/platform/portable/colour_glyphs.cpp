// SPDX-License-Identifier: MIT
// Glyphs that their font paints itself: bitmaps in a strike (CBDT, sbix) and layers of outlines (COLR).
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/portable/glyph_drawing.h"

namespace glyphmotion {
namespace {

// Selects the strike nearest to the size from above, or else the largest. The factor from its pixels to the size's, or
// 0.
double SelectStrike(FT_Face ft, double em) {
  int best = -1;
  const auto sizeOf = [&](int i) { return static_cast<double>(ft->available_sizes[i].y_ppem) / 64; };
  for (int i = 0; i < ft->num_fixed_sizes; ++i) {
    const bool better =
        best < 0 || (sizeOf(best) < em ? sizeOf(i) > sizeOf(best) : sizeOf(i) >= em && sizeOf(i) < sizeOf(best));
    if (sizeOf(i) > 0 && better) best = i;
  }
  return best < 0 || FT_Select_Size(ft, best) ? 0 : em / sizeOf(best);
}

void CopyPixels(const FT_Bitmap& bitmap, GlyphPicture& picture) {
  const std::size_t width = bitmap.width, pitch = static_cast<std::size_t>(std::abs(bitmap.pitch));
  picture.bgra.resize(4 * width * bitmap.rows);
  for (std::size_t y = 0; y < bitmap.rows; ++y) {
    const std::size_t stored = bitmap.pitch < 0 ? bitmap.rows - 1 - y : y;
    const unsigned char* row = bitmap.buffer + stored * pitch;
    std::uint8_t* out = picture.bgra.data() + 4 * width * y;
    if (picture.coloured) {
      std::memcpy(out, row, 4 * width);
    } else {
      for (std::size_t x = 0; x < width; ++x) std::memset(out + 4 * x, row[x], 4);
    }
  }
}

}  // namespace

bool LoadPicture(const GlyphSpec& glyph, GlyphPicture& picture) {
  Face& face = *glyph.face;
  FT_Face ft = face.face.get();
  const FT_F26Dot6 size = std::max<FT_F26Dot6>(To26Dot6(glyph.em), 1);
  face.size = 0;
  double scale = 1;
  if (face.picturesOnly) {
    scale = SelectStrike(ft, glyph.em);
  } else if (FT_Set_Char_Size(ft, size, size, 72, 72)) {
    scale = 0;
  }
  if (scale <= 0 || FT_Load_Glyph(ft, glyph.code, FT_LOAD_COLOR | FT_LOAD_NO_HINTING)) return false;
  FT_GlyphSlot slot = ft->glyph;
  if (slot->format != FT_GLYPH_FORMAT_BITMAP && FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL)) return false;
  const FT_Bitmap& bitmap = slot->bitmap;
  const bool known = bitmap.pixel_mode == FT_PIXEL_MODE_BGRA || bitmap.pixel_mode == FT_PIXEL_MODE_GRAY;
  if (!known || !bitmap.buffer || !bitmap.width || !bitmap.rows) return false;
  picture.width = static_cast<int>(bitmap.width);
  picture.height = static_cast<int>(bitmap.rows);
  picture.coloured = bitmap.pixel_mode == FT_PIXEL_MODE_BGRA;
  picture.left = slot->bitmap_left * scale;
  picture.top = -slot->bitmap_top * scale;
  picture.shownWidth = picture.width * scale;
  picture.shownHeight = picture.height * scale;
  CopyPixels(bitmap, picture);
  return true;
}

}  // namespace glyphmotion
