// SPDX-License-Identifier: MIT
// Compresses one frame of a GIF into LZW codes. An unchanged pixel may be written as its colour or as the transparent
// index, the wildcard; several strategies are tried and the shortest stream is kept.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "host/encoders/lzw.h"

namespace glyphmotion {

/// How a pixel may be written.
enum class GifPixel : std::uint8_t {
  Colour,    ///< its colour
  Free,      ///< its colour or the wildcard
  Wildcard,  ///< the wildcard; its colour is undefined
};

/// A frame's pixels as palette slots.
struct GifPixels {
  std::vector<std::uint8_t> symbols;          ///< slots
  std::vector<GifPixel> kinds;                ///< same length
  std::array<bool, 256> must{}, may{};        ///< slots of required and of free pixels
  bool hasFree = false, hasWildcard = false;  ///< whether there are pixels of this kind
};

/// Computes the other members from `symbols` and `kinds`.
void FindSlots(GifPixels& pixels);

/// The lowest slot that no pixel has, or -1.
int UnusedSlot(const GifPixels& pixels);

/// The initial code size for slots up to `largest`, 2 to 8 bits.
int GifCodeSize(int largest);

/// How free pixels are written.
enum class GifStrategy : std::uint8_t {
  Plain,      ///< as their colours
  Choice,     ///< as either, whichever gives the longer match in the dictionary
  Varied,     ///< as wildcards where a run of them changes colour
  Often,      ///< as wildcards where a run of them changes colour several times
  Wildcards,  ///< as wildcards
};

/// One attempt at a frame.
struct GifWay {
  GifStrategy strategy = GifStrategy::Plain;
  LzwMode mode;
  friend bool operator==(const GifWay&, const GifWay&) = default;
};

/// Which attempts are made, and which of them was the shortest.
struct GifSearch {
  std::vector<GifWay> likely;  ///< if there are any, the frame is compressed in these ways only
  GifWay best;                 ///< set by the compressor
};

/// A frame's compressed pixels.
struct GifStream {
  int wildcard = -1;                ///< slot of the transparent index; -1: not among the codes
  int codeSize = 2;                 ///< 2 to 8
  std::vector<std::uint8_t> bytes;  ///< packed codes
};

/// Compresses frames independently of one another. Its only state is working memory: use one compressor per thread; the
/// result does not depend on how many there are.
class GifFrameCompressor {
 public:
  /// 0 to 9: how many attempts are made at a frame, unless its ways are given. More never make it larger.
  void SetEffort(int effort) { effort_ = effort; }
  /// Once `stop` is true the first attempt that is complete is the last; null: not used.
  void SetStop(const std::atomic<bool>* stop) { stop_ = stop; }

  /// May change `pixels`. A wildcard of 2^paletteBits or more makes the palette grow.
  GifStream Compress(GifPixels& pixels, int paletteBits, GifSearch& search);

 private:
  struct Task;
  struct Best;

  Task TaskOf(GifPixels& pixels, int wildcard, int paletteBits);
  void FindFreedom(const GifPixels& pixels, Task& task);
  void Try(const Task& task, GifWay way, Best& best);
  void TryAll(const Task& task, Best& best);

  int effort_ = 6;
  const std::atomic<bool>* stop_ = nullptr;
  LzwCompressor lzw_;
  LzwCodes best_, attempt_;
  std::vector<std::uint8_t> reached_, free_, open_, written_;  // per pixel
};

}  // namespace glyphmotion
