// SPDX-License-Identifier: MIT
// LZW compression as used by GIF: variable code size, deferred clear, and an optional choice between two symbols per
// pixel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace glyphmotion {

/// Strings may end one symbol early where the next one reaches further for it (Horspool, "The effect of non-greedy
/// parsing in Ziv-Lempel compression methods", 1995): shorter codes in about twice the time. A cut costs the dictionary
/// a string, unless it is full.
enum class Lookahead : std::uint8_t { Never, WhenFull, Always };

/// Two decisions that the format leaves to the compressor. No mode is always the best.
struct LzwMode {
  /// Clears a full dictionary at once (for textures that change all the time) instead of when strings get markedly
  /// shorter (for patterns that recur).
  bool clearWhenFull = false;
  Lookahead lookahead = Lookahead::Always;
  friend bool operator==(const LzwMode&, const LzwMode&) = default;
};

/// Unpacked codes: literals below 2^minCodeSize, then the clear code, the end code and the strings.
struct LzwCodes {
  std::vector<std::uint16_t> codes;  ///< the first `count` of them
  std::size_t count = 0;
  std::size_t bits = 0;  ///< their packed size
  int minCodeSize = 2;

  /// The number of bits that the codes of the first symbols take.
  struct Mark {
    std::size_t symbols, bits;
  };
  std::vector<Mark> marks;  ///< a selection, in order
};

/// When to abandon an attempt.
struct LzwRival {
  std::size_t limit = SIZE_MAX;  ///< most bits allowed
  std::span<const LzwCodes::Mark>
      marks;  ///< of a better attempt at the same number of symbols, whose lead must stay small; or none
};

/// Compresses symbols into codes. Keeps working memory, but no state, between calls.
class LzwCompressor {
 public:
  LzwCompressor();
  ~LzwCompressor();

  /// symbols one a pixel, each below 2^minCodeSize, at least one. free empty, or one flag a pixel: 1 where `wildcard`
  /// may be written instead of the symbol, whichever gives the longer match; otherwise 0. minCodeSize 2 to 8. rival
  /// when to abandon the attempt; `out` is then incomplete, with more bits than the limit. out is overwritten; its
  /// memory is reused.
  ///
  /// The codes begin with a clear and end with the end code.
  /// Source: Welch, "A technique for high-performance data compression" (1984), in the form of the GIF89a format.
  void Compress(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> free, std::uint8_t wildcard,
                int minCodeSize, LzwMode mode, const LzwRival& rival, LzwCodes& out);

 private:
  struct Memory;
  std::unique_ptr<Memory> memory_;
};

/// The codes' bytes, least significant bit first, without GIF's sub-blocks, into `out`.
void PackLzw(const LzwCodes& codes, std::vector<std::uint8_t>& out);

}  // namespace glyphmotion
