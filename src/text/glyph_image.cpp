// SPDX-License-Identifier: MIT
#include "text/glyph_image.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/filters.h"

namespace glyphmotion {
namespace {

/// A picture of 32 bits, colours times alpha, and its place in the box.
struct Layer {
  PackedDib pixels;
  int left = 0, top = 0, width = 0, height = 0;
  bool coloured = true;
};

PackedDib BitmapOf(const GlyphPicture& picture) {
  PackedDib bitmap = BlankDib(picture.width, picture.height, nullptr, 32);
  const DibView view(bitmap);
  if (!view) return {};
  const std::size_t stride = 4 * static_cast<std::size_t>(picture.width);
  for (int y = 0; y < picture.height; ++y) {
    std::memcpy(view.Row(y), picture.bgra.data() + static_cast<std::size_t>(y) * stride, stride);
  }
  return bitmap;
}

Layer LayerOf(const GlyphPicture& picture) {
  Layer layer;
  layer.left = static_cast<int>(std::lround(picture.left));
  layer.top = static_cast<int>(std::lround(picture.top));
  layer.width = std::max(static_cast<int>(std::lround(picture.shownWidth)), 1);
  layer.height = std::max(static_cast<int>(std::lround(picture.shownHeight)), 1);
  layer.coloured = picture.coloured;
  layer.pixels = ResampleToSize(BitmapOf(picture), layer.width, layer.height);
  return layer;
}

/// The filter overshoots; a colour is never more than its alpha. In one bit a pixel is there or not.
void Settle(std::uint8_t* pixel, bool antialias) {
  const int alpha = pixel[3];
  for (int k = 0; k < 3; ++k) {
    const int colour = std::min<int>(pixel[k], alpha);
    pixel[k] = static_cast<std::uint8_t>(antialias ? colour : alpha < 128 ? 0 : colour * 255 / alpha);
  }
  if (!antialias) pixel[3] = alpha < 128 ? 0 : 255;
}

void Cover(std::uint8_t& under, int over, int alpha) {
  under = static_cast<std::uint8_t>(std::min(255, over + (under * (255 - alpha) + 127) / 255));
}

/// Lays the layer over what the image has.
bool PutOver(const Layer& layer, bool antialias, const GlyphImage& image) {
  const DibView from(layer.pixels), coverage(image.coverage), colours(image.colours), painted(image.painted);
  if (!from || !coverage || !colours || !painted) return false;
  const int x0 = layer.left - image.left, y0 = layer.top - image.top;
  for (int y = 0; y < from.Height(); ++y) {
    std::uint8_t* pixel = from.Row(y);
    for (int x = 0; x < from.Width(); ++x, pixel += 4) {
      Settle(pixel, antialias);
      const int alpha = pixel[3];
      Cover(coverage.Row(y0 + y)[x0 + x], alpha, alpha);
      Cover(painted.Row(y0 + y)[x0 + x], layer.coloured ? alpha : 0, alpha);
      std::uint8_t* colour = colours.Row(y0 + y) + 3 * (x0 + x);
      for (int k = 0; k < 3; ++k) Cover(colour[k], layer.coloured ? pixel[k] : 0, alpha);
    }
  }
  return true;
}

}  // namespace

GlyphImage DrawGlyph(const FontRequest& font, bool antialias, char32_t character) {
  GlyphBitmap glyph;
  if (!character || !RenderGlyph(font, character, antialias, glyph)) return {};
  GlyphImage image;
  image.left = glyph.left;
  image.top = glyph.top;
  image.coverage = BlankMask(glyph.width, glyph.height);
  const DibView view(image.coverage);
  if (!view) return {};
  const auto width = static_cast<std::size_t>(glyph.width);
  for (int y = 0; y < glyph.height; ++y) {
    std::memcpy(view.Row(y), glyph.coverage.data() + static_cast<std::size_t>(y) * width, width);
  }
  return image;
}

GlyphImage DrawPictures(const FontRequest& font, bool antialias, char32_t cluster) {
  std::vector<GlyphPicture> pictures;
  if (!RenderPictures(font, cluster, pictures)) return {};
  std::vector<Layer> layers;
  for (const GlyphPicture& picture : pictures) layers.push_back(LayerOf(picture));
  GlyphImage image;
  int right = 1, bottom = 1;
  for (const Layer& layer : layers) {
    const bool first = &layer == layers.data();
    image.left = first ? layer.left : std::min(image.left, layer.left);
    image.top = first ? layer.top : std::min(image.top, layer.top);
    right = first ? layer.left + layer.width : std::max(right, layer.left + layer.width);
    bottom = first ? layer.top + layer.height : std::max(bottom, layer.top + layer.height);
  }
  image.coverage = BlankMask(right - image.left, bottom - image.top);
  image.painted = BlankMask(right - image.left, bottom - image.top);
  image.colours = SolidDib(right - image.left, bottom - image.top, 0);
  for (const Layer& layer : layers) {
    if (!PutOver(layer, antialias, image)) return {};
  }
  if (!CurrentTextRun().options.colourEmoji) {
    image.painted.Reset();
    image.colours.Reset();
  }
  return image;
}

}  // namespace glyphmotion
