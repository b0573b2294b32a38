// SPDX-License-Identifier: MIT
#include "host/encoders/gif_held_frame.h"

#include <algorithm>
#include <array>
#include <utility>

namespace glyphmotion {
namespace {

// The symbol with the fewest required pixels.
std::uint8_t RarestSymbol(const GifPixels& pixels) {
  std::array<std::size_t, 256> count{};
  for (std::size_t i = 0; i < pixels.symbols.size(); ++i)
    if (pixels.kinds[i] == GifPixel::Colour) ++count[pixels.symbols[i]];
  return static_cast<std::uint8_t>(std::min_element(count.begin(), count.end()) - count.begin());
}

template <typename Symbols>
void LeaveToWildcard(GifPixels& pixels, Symbols symbols) {
  for (std::size_t i = 0; i < pixels.symbols.size(); ++i)
    if (symbols(pixels.symbols[i])) pixels.kinds[i] = GifPixel::Wildcard;
  FindSlots(pixels);
}

// A local palette, required colours first.
GifPalette OwnPalette(const GifHeldFrame& frame, std::span<const std::uint32_t> colours) {
  GifPalette palette;
  for (const bool must : {true, false})
    for (std::size_t i = 0; i < 256; ++i)
      if (must ? frame.pixels.must[i] : frame.pixels.may[i] && !frame.pixels.must[i])
        palette.Append(frame.IdOf(i), colours[frame.IdOf(i)]);
  return palette;
}

// Maps the frame's symbols to slots of the palette.
void UseSlots(GifHeldFrame& frame, const GifPalette& palette) {
  GifPixels& pixels = frame.pixels;
  std::array<std::uint8_t, 256> slotOf{};
  std::array<bool, 256> must{}, may{};
  bool same = true;
  for (std::size_t i = 0; i < 256; ++i) {
    if (!pixels.must[i] && !pixels.may[i]) continue;
    slotOf[i] = static_cast<std::uint8_t>(palette.SlotOf(frame.IdOf(i)));
    same &= slotOf[i] == i;
    must[slotOf[i]] = pixels.must[i];
    may[slotOf[i]] = pixels.may[i];
  }
  if (!same)
    for (std::uint8_t& symbol : pixels.symbols) symbol = slotOf[symbol];
  pixels.must = must;
  pixels.may = may;
}

}  // namespace

void SpareIndices(std::vector<GifHeldFrame>& held) {
  constexpr int kShortestDelay = 2;
  for (std::size_t f = 0; f < held.size(); ++f) {
    GifHeldFrame& frame = held[f];
    if (!frame.pixels.hasWildcard && frame.disposal == GifDisposal::Keep) continue;
    if (UnusedSlot(frame.pixels) >= 0) continue;
    const std::uint8_t rarest = RarestSymbol(frame.pixels);
    GifHeldFrame late = frame;
    LeaveToWildcard(frame.pixels, [&](std::uint8_t symbol) { return symbol == rarest; });
    if (!late.pixels.must[rarest]) continue;
    LeaveToWildcard(late.pixels, [&](std::uint8_t symbol) { return symbol != rarest; });
    frame.disposal = GifDisposal::Keep;
    frame.delay = late.delay < 2 * kShortestDelay ? 0 : kShortestDelay;
    late.delay -= frame.delay;
    held.insert(held.begin() + static_cast<std::ptrdiff_t>(++f), std::move(late));
  }
}

GifFileFrame EncodeHeldFrame(GifHeldFrame& frame, const GifPalette* common, std::span<const std::uint32_t> colours,
                             bool index, GifFrameCompressor& compressor, GifSearch& search, GifLossyCompressor* lossy) {
  GifFileFrame out;
  out.disposal = frame.disposal;
  out.delay = frame.delay;
  if (!common) out.own = OwnPalette(frame, colours);
  const GifPalette& palette = common ? *common : *out.own;
  UseSlots(frame, palette);
  GifStream stream = lossy ? lossy->Compress(frame.pixels, palette, frame.crop, frame.disposal)
                           : compressor.Compress(frame.pixels, palette.Bits(), search);
  out.crop = frame.crop;
  out.wildcard = stream.wildcard;
  if (out.wildcard < 0 && index) out.wildcard = UnusedSlot(frame.pixels);
  out.codeSize = stream.codeSize;
  out.bytes = std::move(stream.bytes);
  if (out.own) out.own->Reserve(out.wildcard + 1);
  return out;
}

}  // namespace glyphmotion
