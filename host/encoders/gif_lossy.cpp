// SPDX-License-Identifier: MIT
#include "host/encoders/gif_lossy.h"

#include <algorithm>

namespace glyphmotion {
namespace {

constexpr std::uint32_t kClear = 0xFF000000;

// The squared distance of two colours by the weights of the remap, in units of a channel's squared level.
unsigned ErrorOf(std::uint32_t a, std::uint32_t b) {
  if (a == kClear || b == kClear) return kForbidden;
  const auto channel = [](std::uint32_t colour, int shift) { return static_cast<int>(colour >> shift & 255); };
  const int red = channel(a, 0) - channel(b, 0), green = channel(a, 8) - channel(b, 8),
            blue = channel(a, 16) - channel(b, 16);
  const int error = (3 * red * red + 4 * green * green + 2 * blue * blue + 1) / 3;
  return static_cast<unsigned>(std::min(error, kForbidden - 1));
}

std::size_t At(int x, int y, int width) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

LossyLimits LimitsOf(int loss) {
  constexpr double kBitsAtLimit = 4;
  const unsigned most = 5 * static_cast<unsigned>(std::clamp(loss, 1, 200));
  return {most, kBitsAtLimit / most};
}

int LastOf(const std::array<bool, 256>& slots) {
  int last = 255;
  while (last > 0 && !slots[static_cast<std::size_t>(last)]) --last;
  return last;
}

}  // namespace

GifLossyCompressor::GifLossyCompressor(int width, int height, int loss)
    : width_(width), limits_(LimitsOf(loss)), screen_(At(0, height, width), kClear) {}

void GifLossyCompressor::MeasurePalette(const GifPalette& palette) {
  if (!errors_.empty() && measured_ == palette.colours) return;
  measured_ = palette.colours;
  errors_.assign(std::size_t{256} * 256, kForbidden);
  for (std::size_t a = 0; a < measured_.size(); ++a)
    for (std::size_t b = 0; b < measured_.size(); ++b)
      errors_[a << 8 | b] = static_cast<std::uint16_t>(ErrorOf(measured_[a], measured_[b]));
}

// Finds what the wildcard would leave on the screen. Pixels to which that is near enough become free.
void GifLossyCompressor::FreeNearPixels(GifPixels& pixels, const GifPalette& palette, const GifBox& crop) {
  wildcardErrors_.resize(pixels.symbols.size());
  std::size_t i = 0;
  for (int y = crop.top; y < crop.bottom; ++y)
    for (int x = crop.left; x < crop.right; ++x, ++i) {
      unsigned error = 0;
      if (pixels.kinds[i] != GifPixel::Wildcard) {
        error = ErrorOf(palette.colours[pixels.symbols[i]], screen_[At(x, y, width_)]);
        pixels.kinds[i] = error <= limits_.most ? GifPixel::Free : GifPixel::Colour;
      }
      wildcardErrors_[i] = static_cast<std::uint16_t>(error);
    }
}

// Cuts rows and columns off that the frame does not have to change.
void GifLossyCompressor::Shrink(GifPixels& pixels, std::vector<std::uint16_t>& errors, GifBox& crop) {
  GifBox box{crop.right, crop.bottom, crop.left, crop.top};
  std::size_t i = 0;
  for (int y = crop.top; y < crop.bottom; ++y)
    for (int x = crop.left; x < crop.right; ++x, ++i) {
      if (pixels.kinds[i] != GifPixel::Colour) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1), y + 1};
    }
  if (box.Empty()) box = {crop.left, crop.top, crop.left + 1, crop.top + 1};
  std::size_t to = 0;
  for (int y = box.top; y < box.bottom; ++y)
    for (int x = box.left; x < box.right; ++x, ++to) {
      const std::size_t from = At(x - crop.left, y - crop.top, crop.Width());
      pixels.symbols[to] = pixels.symbols[from];
      pixels.kinds[to] = pixels.kinds[from];
      errors[to] = errors[from];
    }
  pixels.symbols.resize(to);
  pixels.kinds.resize(to);
  errors.resize(to);
  crop = box;
}

void GifLossyCompressor::Show(const GifPalette& palette, const GifBox& crop, int wildcard) {
  std::size_t i = 0;
  for (int y = crop.top; y < crop.bottom; ++y)
    for (int x = crop.left; x < crop.right; ++x, ++i)
      if (written_[i] != wildcard) screen_[At(x, y, width_)] = palette.colours[written_[i]];
}

GifStream GifLossyCompressor::Compress(GifPixels& pixels, const GifPalette& palette, GifBox& crop,
                                       GifDisposal disposal) {
  MeasurePalette(palette);
  FreeNearPixels(pixels, palette, crop);
  if (disposal == GifDisposal::Keep) Shrink(pixels, wildcardErrors_, crop);
  FindSlots(pixels);
  int wildcard = -1;
  if (pixels.hasFree || pixels.hasWildcard) {
    wildcard = UnusedSlot(pixels);
    // Only free pixels have the slot; they have it no more.
    if (wildcard < 0) {
      const auto unneeded = std::find(pixels.must.begin(), pixels.must.end(), false);
      if (unneeded != pixels.must.end()) wildcard = static_cast<int>(unneeded - pixels.must.begin());
    }
  }
  hidden_.resize(pixels.symbols.size());
  for (std::size_t i = 0; i < hidden_.size(); ++i) hidden_[i] = pixels.kinds[i] == GifPixel::Wildcard;
  const int codeSize = GifCodeSize(std::max({LastOf(pixels.must), LastOf(pixels.may), wildcard}));
  lzw_.Compress({pixels.symbols, wildcardErrors_, hidden_, wildcard}, errors_, codeSize, limits_, codes_, written_);
  Show(palette, crop, wildcard);
  if (disposal == GifDisposal::ToBackground)
    for (int y = crop.top; y < crop.bottom; ++y)
      std::fill_n(screen_.begin() + static_cast<std::ptrdiff_t>(At(crop.left, y, width_)), crop.Width(), kClear);
  GifStream stream{wildcard, codes_.minCodeSize, {}};
  PackLzw(codes_, stream.bytes);
  return stream;
}

}  // namespace glyphmotion
