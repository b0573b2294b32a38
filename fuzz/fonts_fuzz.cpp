// SPDX-License-Identifier: MIT
// Arbitrary bytes as the font file of a run.
#include <algorithm>

#include "fuzz/fuzz_file.h"
#include "platform/font_files.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CurrentTextRun() = {};
  std::string error;
  if (!StartTextEngine()) return 0;
  if (!OpenFontFile(fuzz::FileOf(data, size), CurrentTextRun().fontFile, error)) {
    StopTextEngine();
    return 0;
  }
  CurrentTextRun().axes = {{"wght", 650}};
  const FontRequest font{CurrentTextRun().fontFile.family, 20};
  AxesTrouble(font);
  const std::u32string codes =
      ShapeText(font, U"Ae\u0301\u0628\u0644\u0627 \u0915\u094D\u0937\U0001F7E5\U0001F7E6").codes;
  for (const char32_t code : codes + U"Ag1") {
    GlyphBox box;
    GlyphBitmap glyph;
    std::vector<GlyphPicture> pictures;
    MeasureGlyph(font, code, box);
    RenderGlyph(font, code, true, glyph);
    if (box.picture) RenderPictures(font, code, pictures);
  }
  StopTextEngine();
  return 0;
}
