// SPDX-License-Identifier: MIT
#include "host/encoders/gif_lossy.h"

#include <algorithm>
#include <numeric>

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

std::uint64_t SumOf(const std::vector<std::uint16_t>& errors) {
  return std::accumulate(errors.begin(), errors.end(), std::uint64_t{0});
}

}  // namespace

// A version of the current frame.
struct GifLossyCompressor::Frame {
  GifPixels pixels;
  std::vector<std::uint16_t> errors;  // of what is on the screen; 0 for pixels that must be wildcards
  GifBox crop;
  GifStream stream;

  double Bits() const { return 8.0 * static_cast<double>(stream.bytes.size()); }

  // Whether one has to be declared.
  bool NeedsWildcard(GifDisposal disposal) const { return pixels.hasWildcard || disposal != GifDisposal::Keep; }

  // Lets pixels be to which the screen is near enough, and cuts off rows and columns that need no change.
  void Free(unsigned most, GifDisposal disposal) {
    for (std::size_t i = 0; i < errors.size(); ++i)
      if (pixels.kinds[i] != GifPixel::Wildcard)
        pixels.kinds[i] = errors[i] <= most ? GifPixel::Free : GifPixel::Colour;
    if (disposal == GifDisposal::Keep) Shrink();
    FindSlots(pixels);
  }
  void Shrink() {
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
};

GifLossyCompressor::GifLossyCompressor(int width, int height, int loss)
    : width_(width), limits_(LimitsOf(loss)), screen_(At(0, height, width), kClear) {}

void GifLossyCompressor::MeasurePalette(const GifPalette& palette) {
  if (!errors_.empty() && measured_ == palette.colours) return;
  measured_ = palette.colours;
  errors_.assign(std::size_t{256} * 256, kForbidden);
  slots_.clear();
  for (std::size_t a = 0; a < measured_.size(); ++a) {
    slots_.emplace(measured_[a], static_cast<std::uint8_t>(a));
    for (std::size_t b = 0; b < measured_.size(); ++b)
      errors_[a << 8 | b] = static_cast<std::uint16_t>(ErrorOf(measured_[a], measured_[b]));
  }
}

void GifLossyCompressor::MeasureScreen(const GifPalette& palette, Frame& frame) const {
  frame.errors.assign(frame.pixels.symbols.size(), 0);
  std::size_t i = 0;
  for (int y = frame.crop.top; y < frame.crop.bottom; ++y)
    for (int x = frame.crop.left; x < frame.crop.right; ++x, ++i)
      if (frame.pixels.kinds[i] != GifPixel::Wildcard)
        frame.errors[i] =
            static_cast<std::uint16_t>(ErrorOf(palette.colours[frame.pixels.symbols[i]], screen_[At(x, y, width_)]));
}

// Compresses with loss, and puts what is written into `written_`. Returns the sum of its errors.
std::uint64_t GifLossyCompressor::Search(Frame& near, GifDisposal disposal) {
  const GifPixels& pixels = near.pixels;
  int wildcard = -1;
  if (pixels.hasFree || near.NeedsWildcard(disposal)) {
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
  lzw_.Compress({pixels.symbols, near.errors, hidden_, wildcard}, errors_, codeSize, limits_, codes_, written_);
  near.stream = {wildcard, codes_.minCodeSize, {}};
  PackLzw(codes_, near.stream.bytes);
  std::uint64_t error = 0;
  for (std::size_t i = 0; i < written_.size(); ++i)
    error += written_[i] == wildcard ? near.errors[i] : errors_[std::size_t{pixels.symbols[i]} << 8 | written_[i]];
  return error;
}

// What is seen after the lossy frame, as a frame that is free where that is on the screen already.
GifLossyCompressor::Frame GifLossyCompressor::ShownBy(const Frame& near, const GifPalette& palette,
                                                      GifDisposal disposal) const {
  Frame shown = near;
  std::size_t i = 0;
  for (int y = near.crop.top; y < near.crop.bottom; ++y)
    for (int x = near.crop.left; x < near.crop.right; ++x, ++i) {
      const std::uint32_t was = screen_[At(x, y, width_)];
      if (written_[i] != near.stream.wildcard) {
        shown.pixels.symbols[i] = written_[i];
        shown.errors[i] = palette.colours[written_[i]] == was ? 0 : kForbidden;
        continue;
      }
      const auto slot = slots_.find(was);
      shown.errors[i] = 0;
      if (slot == slots_.end())
        shown.pixels.kinds[i] = GifPixel::Wildcard;
      else if (shown.pixels.kinds[i] != GifPixel::Wildcard)
        shown.pixels.symbols[i] = slot->second;
    }
  shown.Free(0, disposal);
  return shown;
}

void GifLossyCompressor::Show(const Frame& frame, const GifPalette& palette, GifDisposal disposal) {
  std::size_t i = 0;
  for (int y = frame.crop.top; y < frame.crop.bottom; ++y)
    for (int x = frame.crop.left; x < frame.crop.right; ++x, ++i) {
      std::uint32_t& pixel = screen_[At(x, y, width_)];
      if (disposal == GifDisposal::ToBackground)
        pixel = kClear;
      else if (frame.pixels.kinds[i] == GifPixel::Colour)
        pixel = palette.colours[frame.pixels.symbols[i]];
    }
}

GifStream GifLossyCompressor::Compress(GifPixels& pixels, const GifPalette& palette, GifBox& crop,
                                       GifDisposal disposal) {
  MeasurePalette(palette);
  Frame exact{std::move(pixels), {}, crop, {}};
  MeasureScreen(palette, exact);
  const std::uint64_t before = SumOf(exact.errors);
  Frame near = exact;
  exact.Free(0, disposal);
  near.Free(limits_.most, disposal);
  const std::uint64_t cutOff = before - SumOf(near.errors), error = cutOff + Search(near, disposal);
  Frame shown = ShownBy(near, palette, disposal);
  for (Frame* const frame : {&exact, &shown}) {
    GifPixels copy = frame->pixels;  // the compressor writes into it
    GifSearch all;
    frame->stream = exact_.Compress(copy, palette.Bits(), all);
  }
  near.pixels.symbols = written_;
  FindSlots(near.pixels);
  // A pixel that must be right again may take the slot that the frame's wildcard needs.
  const bool exactHasRoom = !exact.NeedsWildcard(disposal) || UnusedSlot(exact.pixels) >= 0;
  Frame* best = near.Bits() < shown.Bits() ? &near : &shown;
  if (exactHasRoom && exact.Bits() <= best->Bits() + static_cast<double>(error) * limits_.bitsPerError) best = &exact;
  Show(best == &exact ? exact : shown, palette, disposal);
  crop = best->crop;
  pixels = std::move(best->pixels);
  return std::move(best->stream);
}

}  // namespace glyphmotion
