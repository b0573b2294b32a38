// SPDX-License-Identifier: MIT
// GIF's form of LZW compression: variable code size, deferred clear, and a choice of symbols per pixel.
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

/// Two decisions that the format leaves to the compressor. None of the ways is always the best.
struct LzwMode {
  /// A full dictionary is cleared at once (textures that change all the time), instead of when strings get markedly
  /// shorter (patterns that come again).
  bool clearWhenFull = false;
  Lookahead lookahead = Lookahead::Always;
  friend bool operator==(const LzwMode&, const LzwMode&) = default;
};

/// Codes, not packed yet: literals below 2^minCodeSize, then the clear code, the end code and the strings.
struct LzwCodes {
  std::vector<std::uint16_t> codes;  ///< the first `count` of them
  std::size_t count = 0;
  std::size_t bits = 0;  ///< what they take when packed
  int minCodeSize = 2;

  /// How many bits the codes for the first symbols take.
  struct Mark {
    std::size_t symbols, bits;
  };
  std::vector<Mark> marks;  ///< some, in order
};

/// What an attempt is given up for.
struct LzwRival {
  std::size_t limit = SIZE_MAX;           ///< bits that may not be exceeded
  std::span<const LzwCodes::Mark> marks;  ///< of a better attempt at as many symbols, which may lead by little; or none
};

/// Compresses symbols into codes. Holds some memory for it, nothing else from one call to the next.
class LzwCompressor {
 public:
  LzwCompressor();
  ~LzwCompressor();

  /// symbols   one a pixel, each below 2^minCodeSize, at least one.
  /// free      empty, or one flag a pixel: 1, not 0, where `wildcard` says the same as the symbol and may be written
  ///           instead, whichever the dictionary has the longer string for.
  /// minCodeSize  2 to 8.
  /// rival     what the attempt is given up for: `out` then is no whole stream, and says more bits than the limit.
  /// out       is replaced; its memory is used again.
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
