// SPDX-License-Identifier: MIT
// Arbitrary text through the shaper: what it gives can be measured and drawn.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/encoding.h"
#include "platform/text_run.h"
#include "text/text_raster.h"

using namespace glyphmotion;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool started = StartTextEngine();
  if (!started || size < 1) return 0;
  CurrentTextRun() = {};
  CurrentTextRun().options.direction = static_cast<TextDirection>(data[0] % 3);
  CurrentTextRun().options.align = static_cast<TextAlign>(data[0] / 3 % 5);
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, std::min<std::size_t>(size - 1, 300));
  TextLine line{{"DejaVu Sans", 4 + data[0] % 29, (data[0] & 32) != 0, (data[0] & 64) != 0}, (data[0] & 128) != 0, {}};
  ShapedText shaped = ShapeText(line.font, DecodeText(bytes));
  line.text = shaped.codes + U' ';
  line.rightToLeft = shaped.rightToLeft;
  line.align = CurrentTextRun().options.align;
  GlyphCache cache;
  const TextMeasure measure = MeasureText(line, true, cache);
  if (measure.advances.size() != line.text.size()) std::abort();
  const int width = std::clamp(measure.width, 1, 2000), height = std::clamp(measure.height, 1, 500);
  RasteriseText(line, measure, 0, 0, width, height, 200, cache);
  RasteriseColours(line, measure, 0, 0, width, height, 200, cache);
  return 0;
}
