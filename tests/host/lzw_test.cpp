// SPDX-License-Identifier: MIT
// The compressor against a plain decoder, and the packer against a plain bit writer, above all where the code width
// changes and where the dictionary is full exactly at the end.
#include "host/encoders/lzw.h"

#include <gtest/gtest.h>

#include <random>

namespace glyphmotion {
namespace {

using Symbols = std::vector<std::uint8_t>;

// Calls `see` with every code and its width, which depends on the number of codes since the last clear.
template <typename See>
void ForEachCode(const LzwCodes& codes, See see) {
  const unsigned clear = 1u << codes.minCodeSize;
  unsigned strings = 0, width = 0;
  for (std::size_t i = 0; i < codes.count; ++i) {
    const unsigned code = codes.codes[i];
    if (i == 0) strings = clear + 1, width = static_cast<unsigned>(codes.minCodeSize) + 1;
    see(code, width);
    strings = code == clear ? clear + 1 : std::min(strings + 1, 4096u);
    width = static_cast<unsigned>(codes.minCodeSize) + 1;
    while (width < 12 && strings >= 1u << width) ++width;
  }
}

Symbols Unpacked(const LzwCodes& codes) {
  const unsigned clear = 1u << codes.minCodeSize;
  std::vector<Symbols> strings;
  Symbols out, last;
  ForEachCode(codes, [&](unsigned code, unsigned width) {
    ASSERT_LT(code, 1u << width);
    if (code == clear) {
      strings.assign(clear + 2, {});
      for (unsigned i = 0; i < clear; ++i) strings[i] = {static_cast<std::uint8_t>(i)};
      last.clear();
    } else if (code != clear + 1) {
      ASSERT_TRUE(code < strings.size() || (code == strings.size() && !last.empty() && code < 4096)) << code;
      const std::uint8_t first = code < strings.size() ? strings[code][0] : last[0];
      if (!last.empty() && strings.size() < 4096) {
        strings.push_back(last);
        strings.back().push_back(first);
      }
      last = strings[code];
      out.insert(out.end(), last.begin(), last.end());
    }
  });
  return out;
}

void ExpectPacked(const LzwCodes& codes) {
  std::vector<bool> bits;
  ForEachCode(codes, [&](unsigned code, unsigned width) {
    for (unsigned i = 0; i < width; ++i) bits.push_back(code >> i & 1);
  });
  ASSERT_EQ(bits.size(), codes.bits);
  std::vector<std::uint8_t> plain((bits.size() + 7) / 8), packed;
  for (std::size_t i = 0; i < bits.size(); ++i)
    plain[i / 8] = static_cast<std::uint8_t>(plain[i / 8] | (bits[i] ? 1u : 0u) << (i % 8));
  PackLzw(codes, packed);
  EXPECT_TRUE(packed == plain);
}

// In every mode, with and without free pixels.
void ExpectWhole(LzwCompressor& lzw, const Symbols& symbols, const Symbols& free, int minCodeSize) {
  SCOPED_TRACE(::testing::Message() << symbols.size() << " symbols of " << minCodeSize << " bits");
  const std::uint8_t wildcard = 1;
  for (const Lookahead lookahead : {Lookahead::Never, Lookahead::WhenFull, Lookahead::Always})
    for (const bool clearWhenFull : {false, true})
      for (const bool choice : {false, true}) {
        LzwCodes codes;
        lzw.Compress(symbols, choice ? free : Symbols{}, wildcard, minCodeSize, {clearWhenFull, lookahead}, {}, codes);
        const Symbols out = Unpacked(codes);
        ASSERT_EQ(out.size(), symbols.size());
        for (std::size_t i = 0; i < out.size(); ++i)
          ASSERT_TRUE(out[i] == symbols[i] || (choice && free[i] && out[i] == wildcard)) << "symbol " << i;
        ASSERT_NO_FATAL_FAILURE(ExpectPacked(codes));
      }
}

TEST(Lzw, SymbolsComeBackWhereTheWidthChangesAndTheDictionaryIsFull) {
  std::mt19937 random(3);
  LzwCompressor lzw;
  for (int minCodeSize = 2; minCodeSize <= 8; ++minCodeSize) {
    const std::size_t clear = std::size_t{1} << minCodeSize;
    Symbols noise(12000), free(noise.size());
    for (std::uint8_t& symbol : noise) symbol = static_cast<std::uint8_t>(random() % clear);
    for (std::uint8_t& flag : free) flag = random() % 3 == 0;
    // How many symbols it takes until the codes get longer, and until the dictionary is full.
    LzwCodes codes;
    lzw.Compress(noise, {}, 0, minCodeSize, {false, Lookahead::Never}, {}, codes);
    std::vector<std::size_t> edges;
    for (std::size_t count = clear - 1; count + clear + 1 <= 4096; count = 2 * count + clear + 1) {
      codes.count = count + 1;
      edges.push_back(Unpacked(codes).size());
    }
    for (const std::size_t edge : edges)
      for (std::size_t n = std::max<std::size_t>(edge, 3) - 2; n < std::min(edge + 3, noise.size()); ++n)
        ExpectWhole(lzw, {noise.begin(), noise.begin() + static_cast<std::ptrdiff_t>(n)},
                    {free.begin(), free.begin() + static_cast<std::ptrdiff_t>(n)}, minCodeSize);
  }
}

TEST(Lzw, SymbolsComeBackFromRunsAndChangesOfTexture) {
  std::mt19937 random(5);
  LzwCompressor lzw;
  for (int round = 0; round < 20; ++round) {
    Symbols symbols, free;
    while (symbols.size() < 40000) {
      const std::size_t count = 1 + random() % (round % 2 ? 9000 : 300);
      const auto one = static_cast<std::uint8_t>(random() % 32);
      const bool noise = random() % 3 == 0;
      const auto flag = static_cast<std::uint8_t>(random() % 2);
      for (std::size_t i = 0; i < count; ++i) {
        symbols.push_back(noise ? static_cast<std::uint8_t>(random() % 32) : one);
        free.push_back(random() % 50 ? flag : 1);
      }
    }
    ExpectWhole(lzw, symbols, free, 5);
  }
}

TEST(Lzw, CodesArePackedWhereverClearsOccur) {
  std::mt19937 random(9);
  for (int round = 0; round < 300; ++round) {
    LzwCodes codes;
    codes.minCodeSize = 2 + round % 7;
    const unsigned clear = 1u << codes.minCodeSize, often = 3 + random() % 3000;
    codes.codes.assign(1 + random() % 9000, 0);
    codes.count = codes.codes.size();
    codes.codes[0] = static_cast<std::uint16_t>(clear);
    std::size_t at = 0;
    ForEachCode(codes, [&](unsigned, unsigned width) {
      codes.bits += width;
      if (++at < codes.count)
        codes.codes[at] = static_cast<std::uint16_t>(random() % often ? random() % (2 * clear) : clear);
    });
    ASSERT_NO_FATAL_FAILURE(ExpectPacked(codes));
  }
}

TEST(Lzw, AnAttemptThatIsTooLongIsAbandoned) {
  std::mt19937 random(1);
  Symbols noise(50000);
  for (std::uint8_t& symbol : noise) symbol = static_cast<std::uint8_t>(random());
  LzwCompressor lzw;
  LzwCodes codes;
  for (const Lookahead lookahead : {Lookahead::Never, Lookahead::WhenFull, Lookahead::Always}) {
    lzw.Compress(noise, {}, 0, 8, {false, lookahead}, {100'000, {}}, codes);
    EXPECT_GT(codes.bits, 100'000u);
    EXPECT_LT(codes.bits, 120'000u);
  }
}

TEST(Lzw, AnAttemptThatFallsBehindItsRivalIsAbandoned) {
  std::mt19937 random(1);
  Symbols noise(50000), other(noise.size());
  for (std::uint8_t& symbol : noise) symbol = static_cast<std::uint8_t>(random());
  for (std::uint8_t& symbol : other) symbol = static_cast<std::uint8_t>(random() % 64);
  LzwCompressor lzw;
  LzwCodes best, codes;
  lzw.Compress(other, {}, 0, 8, {false, Lookahead::Never}, {}, best);
  const std::size_t limit = 2 * best.bits;
  for (const Lookahead lookahead : {Lookahead::Never, Lookahead::WhenFull, Lookahead::Always}) {
    lzw.Compress(noise, {}, 0, 8, {false, lookahead}, {limit, best.marks}, codes);
    EXPECT_GT(codes.bits, limit);
    EXPECT_LT(codes.count, 10'000u) << "the pixels that were looked at";
    // One that is level with its rival goes on to the end.
    lzw.Compress(other, {}, 0, 8, {false, lookahead}, {limit, best.marks}, codes);
    EXPECT_LT(codes.bits, limit);
    ASSERT_NO_FATAL_FAILURE(ExpectPacked(codes));
  }
}

}  // namespace
}  // namespace glyphmotion
