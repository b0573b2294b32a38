// SPDX-License-Identifier: MIT
// Font files, and UTF-8 through the shaper: what comes out can be measured and drawn.
#include <algorithm>
#include <cstdio>

#include "fuzz/readers.h"
#include "platform/encoding.h"
#include "platform/font_files.h"
#include "platform/text_run.h"
#include "text/text_raster.h"

namespace glyphmotion::fuzz {

// A file of its own each time: the engine keeps faces that are open, and FreeType maps their files.
void ReadFonts(std::string_view input) {
  static int number = 0;
  CurrentTextRun() = {};
  std::string error;
  StopTextEngine();
  if (!StartTextEngine()) return;
  const std::string path = FileOf(input, ("." + std::to_string(number++) + ".ttf").c_str());
  for (const char* face : {"#0", "#9", "#x", "/"}) OpenFontFile(path + face, CurrentTextRun().fontFile, error);
  if (OpenFontFile(path, CurrentTextRun().fontFile, error)) {
    CurrentTextRun().axes = {{"wght", input.size() % 2 ? 650.0 : 9999.0}, {"wdth", 80}};
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
  }
  std::remove(path.c_str());
}

void ReadText(std::string_view input) {
  Numbers numbers(input);
  const int style = numbers.Byte();
  TextRun& run = CurrentTextRun();
  run = {};
  run.options.direction = static_cast<TextDirection>(style % 3);
  run.options.align = static_cast<TextAlign>(style / 3 % 5);
  TextLine line{{"DejaVu Sans", 4 + style % 29, (style & 32) != 0, (style & 64) != 0}, (style & 128) != 0, {}};
  ShapedText shaped = ShapeText(line.font, DecodeText(std::string(numbers.Rest())));
  line.text = shaped.codes + U' ';
  line.rightToLeft = shaped.rightToLeft;
  line.align = run.options.align;
  GlyphCache cache;
  const TextMeasure measure = MeasureText(line, true, cache);
  Require(measure.advances.size() == line.text.size());
  const int width = std::clamp(measure.width, 1, 2000), height = std::clamp(measure.height, 1, 500);
  RasteriseText(line, measure, 0, 0, width, height, 200, cache);
  RasteriseColours(line, measure, 0, 0, width, height, 200, cache);
}

}  // namespace glyphmotion::fuzz
