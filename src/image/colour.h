// SPDX-License-Identifier: MIT
// Colour values, palettes and the blend function that everything uses.
#pragma once

#include <array>
#include <cstdint>

namespace glyphmotion {

/// 0x00BBGGRR: red in the low byte. In 32-bit pixels alpha is in the high byte.
using Colour = std::uint32_t;

/// "No colour": the result of a transparent-colour function when there is no uniform background.
constexpr Colour kNoColour = 0xFFFFFFFF;

constexpr int RedOf(Colour colour) { return static_cast<int>(colour & 0xFF); }
constexpr int GreenOf(Colour colour) { return static_cast<int>((colour >> 8) & 0xFF); }
constexpr int BlueOf(Colour colour) { return static_cast<int>((colour >> 16) & 0xFF); }
constexpr Colour MakeColour(int red, int green, int blue) {
  return static_cast<Colour>((red & 0xFF) | (green & 0xFF) << 8 | (blue & 0xFF) << 16);
}

/// One palette entry, in the byte order of the host contract.
struct Rgb {
  std::uint8_t red = 0, green = 0, blue = 0;
  friend constexpr bool operator==(const Rgb&, const Rgb&) = default;
};
static_assert(sizeof(Rgb) == 3);

/// Always 256 entries; those past a palette's own count are zero.
using Palette = std::array<Rgb, 256>;

constexpr Colour ColourOf(Rgb entry) { return MakeColour(entry.red, entry.green, entry.blue); }
constexpr Rgb RgbOf(Colour colour) {
  return {static_cast<std::uint8_t>(RedOf(colour)), static_cast<std::uint8_t>(GreenOf(colour)),
          static_cast<std::uint8_t>(BlueOf(colour))};
}

/// v / 255 truncated, exact for 0 <= v <= 65535 - 255.
constexpr int Div255(int v) { return (v + 1 + (v >> 8)) >> 8; }

/// One channel of a blend: `over` with weight a (0 to 255) onto `under`; each product is divided separately.
constexpr std::uint8_t BlendChannel(int under, int over, int a) {
  return static_cast<std::uint8_t>(Div255(under * (255 - a)) + Div255(over * a));
}

/// BlendChannel for red, green and blue; the top byte of the result is zero.
constexpr Colour Blend(Colour under, Colour over, int a) {
  return MakeColour(BlendChannel(RedOf(under), RedOf(over), a), BlendChannel(GreenOf(under), GreenOf(over), a),
                    BlendChannel(BlueOf(under), BlueOf(over), a));
}

}  // namespace glyphmotion
