// SPDX-License-Identifier: MIT
// One frame of a GIF into LZW codes. A pixel that stays as it was may be written as its colour or as the transparent
// index, the wildcard: the ways to use that freedom are tried against each other, and the shortest is kept.
#pragma once

#include <array>
#include <cstdint>
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

/// The lowest slot that no pixel has, or -1.
int UnusedSlot(const GifPixels& pixels);

/// The bits that codes begin with for slots up to `largest`, 2 to 8.
int GifCodeSize(int largest);

/// Compresses frame after frame. Neighbouring frames are alike and trying costs time: so it remembers what won.
class GifFrameCompressor {
 public:
  /// Tells how many pixels the frames have together that are now going to come: of few, everything is tried.
  void Expect(std::size_t pixels);
  /// `pixels` may be changed. `paletteBits`: a wildcard past 2^paletteBits makes the palette grow.
  /// Gives the slot of the wildcard, -1 if there is none among the codes; these stand in Codes().
  int Compress(GifPixels& pixels, int paletteBits);
  const LzwCodes& Codes() const { return best_; }

 private:
  // How free pixels are written: as their colours; as the dictionary likes; as their colour where its run goes on; as
  // the wildcard where they vary, or vary often; as the wildcard.
  enum class Method { Plain, Choice, Runs, Varied, Often, Wildcards };
  static constexpr std::size_t kMethods = 6;
  struct Task;
  struct Result {
    std::size_t cost = SIZE_MAX;  // bytes
    Method method = Method::Plain;
    LzwMode mode;
    LzwCodes* best;                           // where the winner's codes are put
    std::array<std::size_t, kMethods> costs;  // the least of each method, or more than the winner's if it was given up
    std::uint64_t tried = 0;                  // a bit for each method and mode
    explicit Result(LzwCodes& codes) : best(&codes) { costs.fill(SIZE_MAX); }
    std::size_t CostOf(Method one) const { return costs[static_cast<std::size_t>(one)]; }
    Method Second() const;
  };

  std::array<bool, 256> GivenUp(const GifPixels& pixels, const Task& task) const;
  Task TaskOf(GifPixels& pixels, int wildcard, int paletteBits);
  void Try(const Task& task, Method method, LzwMode mode, Result& result);
  void TryMethods(const Task& task, Lookahead lookahead, Result& result);
  static bool SecondIsClose(const Task& task, const Result& result);
  void TryWhole(const Task& task, Result& result);
  void TryAll(const Task& task, Result& result);
  void Race(const Task& task, Result& result);
  Method Usual(const Result& race) const;
  bool IsTrial(const Task& task);
  bool IsDear(const Task& task, std::size_t cost) const;
  bool HasDrifted(std::size_t cost, std::size_t pixels) const;

  LzwCompressor lzw_;
  LzwCodes best_, part_, attempt_;
  std::vector<std::uint8_t> reached_, freedom_, open_, written_;
  Method lastMethod_ = Method::Plain, secondMethod_ = Method::Plain;
  bool secondIsClose_ = false, thorough_ = false, largeAnimation_ = false;
  bool narrow_ = false;  // the last race was lost, by little, by the method that is in use nevertheless
  LzwMode lastMode_;
  std::size_t lastCost_ = 0;
  int dearCountdown_ = 0, dearPeriod_ = 1;               // frames until one may be tried whole in every way again
  std::size_t freeOfTrial_ = 0, sizeOfTrial_ = 1;        // pixels
  std::size_t costOfTrial_ = 0;                          // bytes
  int countdown_ = 0, period_ = 1, longestPeriod_ = 16;  // frames until the other ways are tried again
};

}  // namespace glyphmotion
