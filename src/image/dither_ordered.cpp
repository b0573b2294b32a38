// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>

#include "image/colour_cells.h"
#include "image/remap.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kSide = 8;

// Bayer's matrix, 0 to 63: each quarter has every fourth threshold.
constexpr auto kThresholds = [] {
  std::array<std::array<int, kSide>, kSide> matrix{};
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x)
      for (int bit = 0; bit < 3; ++bit)
        matrix[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] |=
            ((x ^ y) >> bit & 1) << (5 - 2 * bit) | (y >> bit & 1) << (4 - 2 * bit);
  return matrix;
}();

/// A colour as two entries: `second` takes a share of `part` in `whole`, at most the half.
struct Mix {
  std::uint32_t colour = ~0u;
  std::uint8_t first = 0, second = 0;
  int part = 0, whole = 1;
};

Mix MixOf(std::uint32_t colour, int red, int green, int blue, ColourMatcher::State& state) {
  const auto match = [&](int r, int g, int b) {
    const auto limited = [](int v) { return static_cast<std::uint32_t>(v < 0 ? 0 : v > 255 ? 255 : v); };
    return Match(state, limited(r), limited(g), limited(b));
  };
  Mix mix;
  mix.colour = colour;
  mix.first = mix.second = match(red, green, blue);
  const Rgb a = state.palette[mix.first];
  const int r = red - a.red, g = green - a.green, b = blue - a.blue;
  if (!r && !g && !b) return mix;
  // The further the colour is from the middle between the two, the further ahead the second one lies.
  for (int ahead = 1; mix.second == mix.first && ahead < 16; ahead = 2 * ahead + 1)
    mix.second = match(red + ahead * r, green + ahead * g, blue + ahead * b);
  const Rgb to = state.palette[mix.second];
  const int dr = to.red - a.red, dg = to.green - a.green, db = to.blue - a.blue;
  mix.part = 3 * r * dr + 4 * g * dg + 2 * b * db;
  mix.whole = 3 * dr * dr + 4 * dg * dg + 2 * db * db;
  return mix;
}

}  // namespace

PackedDib DitherOrdered(const PackedDib& image, ColourMatcher& matcher) noexcept {
  ColourMatcher::State& state = matcher.Internals();
  const DibView source(image);
  if (!source || source.Bits() != 24 || state.depth < 2 || state.depth > 8) return DitherImage(image, matcher);
  const int width = source.Width(), height = source.Height();
  PackedDib dithered = BlankDib(width, height, &state.palette, state.depth);
  const DibView target(dithered);
  const MovableBlock line(AllocateBlock(static_cast<std::size_t>(width)));
  const LockedBlock<std::uint8_t> indices(line.Handle());
  if (!target || !indices || !PrepareMatching(state)) return {};
  Mix mix;
  for (int y = 0; y < height; ++y) {
    if (EndRequested()) return {};
    const std::uint8_t* pixel = source.Row(y);
    const auto& thresholds = kThresholds[static_cast<std::size_t>(y % kSide)];
    for (int x = 0; x < width; ++x, pixel += 3) {
      const std::uint32_t colour = pixel[2] | std::uint32_t{pixel[1]} << 8 | std::uint32_t{pixel[0]} << 16;
      if (colour != mix.colour) mix = MixOf(colour, pixel[2], pixel[1], pixel[0], state);
      const int threshold = 2 * thresholds[static_cast<std::size_t>(x % kSide)] + 1;
      const bool second = 128 * mix.part > threshold * mix.whole;
      indices.get()[x] = second ? mix.second : mix.first;
    }
    PackIndices(target.Row(y), indices.get(), width, target.Bits());
  }
  return dithered;
}

}  // namespace glyphmotion
