// SPDX-License-Identifier: MIT
#include "image/palette_error.h"

#include <new>

#include "image/colour_cells.h"
#include "image/run_pixels.h"

namespace glyphmotion {
namespace {

std::uint64_t RowError(const std::uint8_t* row, std::size_t width, ColourMatcher::State& state) {
  std::uint64_t error = 0;
  for (std::size_t x = 0; x < width;) {
    const std::uint8_t* p = row + 3 * x;
    const std::size_t run = RunLength(p, width - x);
    const Rgb entry = state.palette[Match(state, p[2], p[1], p[0])];
    const int red = p[2] - entry.red, green = p[1] - entry.green, blue = p[0] - entry.blue;
    error += run * static_cast<std::uint64_t>(red * red + green * green + blue * blue);
    x += run;
  }
  return error;
}

}  // namespace

std::optional<double> PaletteError(const FrameList& frames, const Palette& palette, int count) noexcept try {
  ColourMatcher matcher(palette, 8, count, {});
  ColourMatcher::State& state = matcher.Internals();
  if (!PrepareMatching(state)) return std::nullopt;
  std::uint64_t error = 0, pixels = 0;
  const bool all = ForEachImage(frames, [&](const DibView& image) {
    const auto width = static_cast<std::size_t>(image.Width());
    for (int r = 0; r < image.Height(); ++r) {
      if (EndRequested()) return false;
      error += RowError(image.StoredRow(r), width, state);
    }
    pixels += width * static_cast<std::size_t>(image.Height());
    return true;
  });
  if (!all) return std::nullopt;
  return static_cast<double>(error) / (3.0 * static_cast<double>(pixels));
} catch (const std::bad_alloc&) {
  return std::nullopt;
}

}  // namespace glyphmotion
