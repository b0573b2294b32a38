// SPDX-License-Identifier: MIT
// Lossy LZW compression for GIF: a pixel may be written as another symbol than its own where that makes strings longer
// and the error is worth it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "host/encoders/lzw.h"

namespace glyphmotion {

/// The squared error of writing slot `b` where slot `a` is wanted, for all pairs of 256: errors[a * 256 + b].
using SlotErrors = std::vector<std::uint16_t>;

struct LossyPixels {
  std::span<const std::uint8_t> symbols;  ///< wanted slots
  std::span<const std::uint16_t>
      wildcardError;                       ///< of the wildcard, pixel by pixel; kForbidden: it must not be written
  std::span<const std::uint8_t> mustHide;  ///< 1: only the wildcard may be written
  int wildcard = -1;                       ///< its slot; -1: none
};
constexpr std::uint16_t kForbidden = 0xFFFF;

/// What an error may cost.
struct LossyLimits {
  unsigned most = 0;    ///< squared error of a pixel, at most kForbidden - 1
  double bitsPerError;  ///< how many bits a unit of squared error has to save
};

/// Keeps working memory, but no state, between calls. Deterministic.
class LossyLzwCompressor {
 public:
  LossyLzwCompressor();
  /// Once `stop` is true Compress returns soon, with fewer codes; null: not used.
  void SetStop(const std::atomic<bool>* stop) { stop_ = stop; }
  ~LossyLzwCompressor();

  /// minCodeSize  2 to 8, for all symbols and the wildcard. out, written  overwritten: the codes as of LzwCompressor,
  /// and the symbol that they give each pixel.
  void Compress(const LossyPixels& pixels, const SlotErrors& errors, int minCodeSize, const LossyLimits& limits,
                LzwCodes& out, std::vector<std::uint8_t>& written);

 private:
  struct Memory;
  std::unique_ptr<Memory> memory_;
  const std::atomic<bool>* stop_ = nullptr;
};

}  // namespace glyphmotion
