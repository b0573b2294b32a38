// SPDX-License-Identifier: MIT
// Converts images to palette indices: the colour matcher, the plain remap, the dithered remap, and the mask replacement
// that marks background pixels.
#pragma once

#include "image/packed_dib.h"

namespace glyphmotion {

/// How a dithered remap spreads the errors.
enum class Dithering : std::uint8_t {
  Diffuse,  ///< DitherImage
  Stable,   ///< DitherStable: what does not change from frame to frame keeps its indices
  Ordered   ///< DitherOrdered: by a fixed pattern, so that equal pixels get equal indices in every frame
};

/// The persistent settings of remapping.
struct RemapOptions {
  bool fastRemap = false;     ///< exact match, else a table of 15-bit colours, instead of the nearest colour
  int ditherBrightness = 20;  ///< one-bit dither only
  int ditherContrast = 20;    ///< one-bit dither only
};

/// The index of the entry nearest to a colour: the lowest exact match among `count` entries, else the lowest of those
/// with the least 3 dr^2 + 4 dg^2 + 2 db^2 below 1000000, else 0. `count` below 1 gives 0.
int NearestColour(int red, int green, int blue, const Palette& palette, int count) noexcept;

/// 77/255 red + 150/255 green + 28/255 blue, each quotient truncated, kept in 8 bits.
constexpr int Brightness(Rgb c) { return (77 * c.red / 255 + 150 * c.green / 255 + 28 * c.blue / 255) & 0xFF; }

/// Stable ascending order by brightness of the first `count` entries.
void SortPaletteByBrightness(Palette& palette, int count) noexcept;

/// Caches the matches for one palette and one run, so that a run searches each colour once. Use one matcher for all
/// frames of a run. Results never depend on the contents of the cache.
class ColourMatcher {
 public:
  ColourMatcher(const Palette& palette, int depth, int count, const RemapOptions& options);
  ~ColourMatcher();
  ColourMatcher(const ColourMatcher&) = delete;
  ColourMatcher& operator=(const ColourMatcher&) = delete;

  struct State;
  State& Internals() noexcept { return *state_; }

 private:
  State* state_;
};

/// A new image of the matcher's depth (1, 2 to 4 or 5 to 8 bits, stored in 1, 4 or 8) with the matcher's palette, or
/// nothing. The source, of any depth but 32, is only read.
PackedDib RemapImage(const PackedDib& image, ColourMatcher& matcher) noexcept;

/// The same with Floyd-Steinberg error diffusion, always left to right in storage order. A 1-bit source gives nothing.
PackedDib DitherImage(const PackedDib& image, ColourMatcher& matcher) noexcept;

/// The same with the errors of changed pixels only: a pixel whose colour is the same in `before`, the source of the
/// previous frame, keeps its index in `beforeRemapped`, and its error is dropped. Without a previous frame of the same
/// size and depth this is DitherImage, as it is for one-bit palettes.
PackedDib DitherStable(const PackedDib& image, const PackedDib& before, const PackedDib& beforeRemapped,
                       ColourMatcher& matcher) noexcept;

/// Ordered dither of 24-bit images for any palette: a pixel gets the nearest entry or the one on the other side of its
/// colour, whichever a threshold matrix of 8 x 8 selects, in the proportion that mixes to the colour. Other depths,
/// and one-bit palettes, are as in DitherImage.
/// Source: the pattern of Bayer (1973); the choice of two entries after Knoll's pattern dithering (1999).
PackedDib DitherOrdered(const PackedDib& image, ColourMatcher& matcher) noexcept;

/// A copy of `remapped` with `index` wherever `source` has `colour` in its low 24 bits (so kNoColour means white).
PackedDib MaskReplace(const PackedDib& remapped, const PackedDib& source, Colour colour, int index) noexcept;

}  // namespace glyphmotion
