// SPDX-License-Identifier: MIT
// One frame of a GIF into LZW codes. A pixel that stays as it was may be written as its colour or as the transparent
// index, the wildcard: some strategies for that freedom are tried, and the shortest stream is kept.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "host/encoders/lzw.h"

namespace glyphmotion {

/// What a pixel may be written as.
enum class GifPixel : std::uint8_t {
  Colour,    ///< its colour
  Free,      ///< its colour or the wildcard
  Wildcard,  ///< the wildcard; its colour means nothing
};

/// A frame's pixels and colours, the latter by palette slot.
struct GifPixels {
  std::vector<std::uint8_t> symbols;          ///< slots
  std::vector<GifPixel> kinds;                ///< as many
  std::array<bool, 256> must{}, may{};        ///< slots that pixels have that must be written, and that may be left out
  bool hasFree = false, hasWildcard = false;  ///< there are pixels of this kind
};

/// Fills everything but `symbols` and `kinds` in from these.
void FindSlots(GifPixels& pixels);

/// The lowest slot that no pixel has, or -1.
int UnusedSlot(const GifPixels& pixels);

/// The bits that codes begin with for slots up to `largest`, 2 to 8.
int GifCodeSize(int largest);

/// A frame's compressed pixels.
struct GifStream {
  int wildcard = -1;                ///< slot of the transparent index; -1: not among the codes
  int codeSize = 2;                 ///< 2 to 8
  std::vector<std::uint8_t> bytes;  ///< packed codes
};

/// Compresses frames, each without regard to the others. Holds memory for it and nothing else: one compressor serves
/// one thread, and any number of them give the same bytes.
class GifFrameCompressor {
 public:
  /// `pixels` may be changed. `paletteBits`: a wildcard past 2^paletteBits makes the palette grow.
  GifStream Compress(GifPixels& pixels, int paletteBits);

 private:
  struct Task;
  struct Best;
  enum class Strategy : std::uint8_t;

  Task TaskOf(GifPixels& pixels, int wildcard, int paletteBits);
  void FindFreedom(const GifPixels& pixels, Task& task);
  void Try(const Task& task, Strategy strategy, LzwMode mode, Best& best);

  LzwCompressor lzw_;
  LzwCodes best_, attempt_;
  std::vector<std::uint8_t> reached_, free_, open_, written_;  // by pixel
};

}  // namespace glyphmotion
