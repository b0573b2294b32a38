// SPDX-License-Identifier: MIT
#include "shell/about_animation.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

#include "controls/face_pixels.h"

namespace glyphmotion {
namespace {

constexpr std::string_view kName = "Glyphmotion";
constexpr Colour kZenith = MakeColour(0x12, 0x20, 0x3C), kHorizon = MakeColour(0x3A, 0x74, 0xB4);
constexpr Colour kLetter = MakeColour(0xF2, 0xF6, 0xFC), kGleam = MakeColour(0xFF, 0xC8, 0x48);
constexpr double kTurn = 2 * std::numbers::pi;

void MakeLetters(AboutLetters& letters, int cellHeight) {
  letters = {};
  letters.cellHeight = cellHeight;
  const FontRequest font{"Arial", cellHeight, true, false};
  const double margins = cellHeight / 3.0;  // of two adjacent boxes together
  for (const char c : kName) {
    GlyphBitmap glyph;
    GlyphBox box;
    if (!MeasureGlyph(font, static_cast<char32_t>(c), box) ||
        !RenderGlyph(font, static_cast<char32_t>(c), true, glyph)) {
      continue;
    }
    letters.places.push_back(letters.width);
    letters.width += std::max(box.width - margins, 1.0);
    letters.glyphs.push_back(std::move(glyph));
  }
  letters.width += margins;
}

void PaintSky(const DrawRequest& request, double phase) {
  // A glow below the horizon moves from side to side.
  const double middle = request.width * (0.5 + 0.38 * std::sin(kTurn * phase)), reach = request.width * 0.35;
  std::vector<int> glow(static_cast<std::size_t>(request.width));
  for (int x = 0; x < request.width; ++x) {
    const double away = (x - middle) / reach;
    glow[static_cast<std::size_t>(x)] = static_cast<int>(110 * std::exp(-away * away));
  }
  for (int y = 0; y < request.height; ++y) {
    const int down = 255 * y / std::max(request.height - 1, 1);
    const Colour sky = Blend(kZenith, kHorizon, down);
    for (int x = 0; x < request.width; ++x) {
      const Colour colour = Blend(sky, 0xFFFFFF, glow[static_cast<std::size_t>(x)] * down / 255);
      PutColour(FacePixel(request, x, y), colour);
    }
  }
}

/// At a fractional height: the rows above and below share the coverage.
void PaintLetter(const DrawRequest& request, const GlyphBitmap& glyph, int left, double top, Colour colour) {
  const int row = static_cast<int>(std::floor(top));
  const int below = static_cast<int>(255 * (top - row));
  const auto coverage = [&](int x, int y) -> int {
    if (y < 0 || y >= glyph.height) return 0;
    return glyph.coverage[static_cast<std::size_t>(y * glyph.width + x)];
  };
  for (int y = 0; y <= glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      const int alpha = (coverage(x, y) * (255 - below) + coverage(x, y - 1) * below) / 255;
      if (alpha > 0 && IsOnFace(request, left + x, row + y)) {
        BlendColour(FacePixel(request, left + x, row + y), colour, alpha);
      }
    }
  }
}

}  // namespace

void PaintAboutPicture(const DrawRequest& request, AboutLetters& letters, unsigned tick) {
  const double phase = static_cast<double>(tick % kAboutPeriod) / kAboutPeriod;
  PaintSky(request, phase);
  // As high as the picture, limited by its width.
  const int cell = std::max(std::min(request.height * 7 / 10, request.width / 6), 6);
  if (letters.cellHeight != cell) MakeLetters(letters, cell);
  const double swing = request.height * 0.09, left = (request.width - letters.width) / 2;
  const auto count = static_cast<double>(letters.glyphs.size());
  const double gleam = phase * (count + 6) - 3;
  for (std::size_t i = 0; i < letters.glyphs.size(); ++i) {
    const GlyphBitmap& glyph = letters.glyphs[i];
    const auto at = static_cast<double>(i);
    const double rise = swing * std::sin(kTurn * (2 * phase - at / 11));
    const double near = std::exp(-(at - gleam) * (at - gleam) / 2.5);
    const int x = static_cast<int>(std::lround(left + letters.places[i]));
    const double y = (request.height - glyph.height) / 2.0 + rise;
    const int shadow = std::max(request.height / 24, 1);
    PaintLetter(request, glyph, x + shadow, y + shadow, kZenith);
    PaintLetter(request, glyph, x, y, Blend(kLetter, kGleam, static_cast<int>(255 * near)));
  }
}

void RunAboutTimer(Dialog& dialog, int timer, int control) {
  if (IsVisible(dialog, control)) {
    Invalidate(dialog, control);
  } else {
    KillTimer(dialog, timer);
  }
}

}  // namespace glyphmotion
