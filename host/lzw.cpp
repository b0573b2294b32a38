// SPDX-License-Identifier: MIT
// The dictionary is a trie of strings: one small hash table, which stays in the nearest cache, holds the child of each
// node by symbol. Codes are collected unpacked, and their length in bits is only counted: of several attempts at a
// frame all but one are thrown away, and the winner may still change its literals before it is packed.
#include "host/lzw.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

constexpr unsigned kCodes = 4096;
constexpr unsigned kHashBits = 13;
constexpr unsigned kNone = 0xFFFF;

// Most nodes have one child or none: the first stands beside its parent, and one exclusive or with the symbol looked
// for gives its code, or something larger. The others are in a hash table, by node and symbol.
struct Dictionary {
  std::array<std::uint32_t, kCodes> first;             // by node: symbol << 12 | code
  std::array<std::uint32_t, 1u << kHashBits> further;  // (node << 8 | symbol) << 12 | code; codes are never 0 here

  // Forgets all strings; those from `codes` on were not used.
  void Clear(unsigned codes) {
    std::fill_n(first.begin(), codes, kNoChild);
    if (hasFurther) further.fill(0);
    hasFurther = false;
  }
  unsigned Child(unsigned node, unsigned symbol) const {
    const std::uint32_t child = first[node] ^ symbol << 12;
    if (child < kCodes) return child;
    return first[node] == kNoChild ? kNone : FurtherChild(node, symbol);
  }
  void Insert(unsigned node, unsigned symbol, unsigned code) {
    if (first[node] == kNoChild) {
      first[node] = symbol << 12 | code;
      return;
    }
    unsigned slot = Slot(node, symbol);
    while (further[slot]) slot = (slot + 1) & kMask;
    further[slot] = (node << 8 | symbol) << 12 | code;
    hasFurther = true;
  }

 private:
  static constexpr std::uint32_t kNoChild = ~std::uint32_t{0};
  static constexpr unsigned kMask = (1u << kHashBits) - 1;
  bool hasFurther = true;

  static unsigned Slot(unsigned node, unsigned symbol) {
    return node << 1 ^ (symbol * 0x9E3779B1u) >> (32 - kHashBits);
  }
  unsigned FurtherChild(unsigned node, unsigned symbol) const {
    const unsigned key = node << 8 | symbol;
    for (unsigned slot = Slot(node, symbol);; slot = (slot + 1) & kMask) {
      const std::uint32_t entry = further[slot];
      if (!entry) return kNone;
      if (entry >> 12 == key) return entry & 0xFFF;
    }
  }
};

// Writes to memory that has room for eight bytes more than what is put.
struct BitWriter {
  std::uint8_t* to;
  std::uint64_t bits = 0;
  unsigned count = 0;

  void Put(unsigned code, unsigned width) {
    bits |= std::uint64_t{code} << count;
    count += width;
    if (count >= 32) PutBytes(4);
  }
  void PutBytes(unsigned bytes) {
    for (unsigned i = 0; i < bytes; ++i) *to++ = static_cast<std::uint8_t>(bits >> (8 * i));
    bits >>= 8 * bytes;
    count = count > 8 * bytes ? count - 8 * bytes : 0;
  }
  void Flush() { PutBytes((count + 7) / 8); }
};

// Decides when a full dictionary is no longer worth keeping: looks at the mean length of the strings found, a window of
// codes at a time, against the best window since the dictionary was full.
struct ClearPolicy {
  static constexpr unsigned kWindow = 256;  // codes
  static constexpr double kTolerance = 0.95;
  bool whenFull;
  unsigned codes = 0;
  std::size_t windowStart = 0;
  double best = 0;

  void Full(std::size_t position) { codes = 0, windowStart = position, best = 0; }
  bool WantsClear(std::size_t position) {
    if (whenFull) return true;
    if (++codes < kWindow) return false;
    const auto length = static_cast<double>(position - windowStart);
    codes = 0;
    windowStart = position;
    if (length > best) best = length;
    return length < best * kTolerance;
  }
};

unsigned FirstWidth(unsigned clear) {
  unsigned width = 1;
  while ((1u << width) <= clear) ++width;
  return width;
}

// Codes of the strings that are nothing but one symbol, by length: along the ground of a picture the matcher needs not
// follow every pixel.
struct Runs {
  const std::uint8_t* pixels = nullptr;  // where they are looked for: symbols, or flags of free pixels
  std::size_t size = 0;
  std::uint8_t value = 0;   // of the pixels
  std::uint8_t symbol = 0;  // of the strings
  unsigned longest = 1;
  std::array<std::uint16_t, kCodes> codes;
  std::size_t end = 0;  // of the run seen last

  void Clear() {
    longest = 1;
    codes[1] = symbol;
  }
  void Added(unsigned node, unsigned last, unsigned code) {
    if (last == symbol && node == codes[longest]) codes[++longest] = static_cast<std::uint16_t>(code);
  }
  // The end of the run in which `i` lies. Places may only go back where they stay in a run.
  std::size_t EndFrom(std::size_t i) {
    if (i < end) return end;
    std::uint64_t all, word;
    std::memset(&all, value, sizeof all);
    for (; i + sizeof word <= size; i += sizeof word) {
      std::memcpy(&word, pixels + i, sizeof word);
      if (word != all) break;
    }
    while (i < size && pixels[i] == value) ++i;
    return end = i;
  }
};

// The symbol that most often stands beside itself, as far as a sample tells.
std::uint8_t CommonSymbol(std::span<const std::uint8_t> symbols) {
  std::array<std::uint32_t, 256> count{};
  for (std::size_t i = 1; i < symbols.size(); i += 61)
    if (symbols[i] == symbols[i - 1]) ++count[symbols[i]];
  return static_cast<std::uint8_t>(std::max_element(count.begin(), count.end()) - count.begin());
}

// Collects codes and keeps the code width in step with what a decoder has.
class CodeStream {
 public:
  CodeStream(Dictionary& dictionary, Runs& runs, int minCodeSize, bool clearWhenFull, std::size_t symbols,
             std::size_t limit, LzwCodes& out)
      : dictionary_(dictionary),
        runs_(runs),
        out_(out),
        policy_{clearWhenFull},
        limit_(limit),
        clear_(1u << minCodeSize),
        width_(FirstWidth(clear_)) {
    // A clear stands for at least a thousand symbols, or it is the first or the last code.
    const std::size_t most = symbols + symbols / 1000 + 4;
    if (out.codes.size() < most) out.codes.resize(most);
    to_ = out.codes.data();
    out.minCodeSize = minCodeSize;
    Restart();
  }
  void Restart() {
    Put(clear_);
    dictionary_.Clear(kCodes);
    runs_.Clear();
    next_ = clear_ + 2;
    width_ = FirstWidth(clear_);
  }
  void Put(unsigned node) {
    *to_++ = static_cast<std::uint16_t>(node);
    bits_ += width_;
  }
  bool TooLong() const { return bits_ > limit_; }
  bool Full() const { return next_ == kCodes; }
  unsigned Next() const { return next_; }
  // The string of `node` and one more symbol becomes a string. Not when full.
  void Add(unsigned node, unsigned symbol, std::size_t position) {
    dictionary_.Insert(node, symbol, next_);
    runs_.Added(node, symbol, next_);
    Skip(position);
  }
  // The decoder adds a string that stands already.
  void Skip(std::size_t position) {
    if (next_ == 1u << width_) ++width_;
    if (++next_ == kCodes) policy_.Full(position);
  }
  bool WantsClear(std::size_t position) { return policy_.WantsClear(position); }
  // The decoder adds a string for the last code too, whatever it may be.
  void End() {
    if (next_ < kCodes && next_ == 1u << width_) ++width_;
    Put(clear_ + 1);
    out_.count = static_cast<std::size_t>(to_ - out_.codes.data());
    out_.bits = bits_;
  }

 private:
  Dictionary& dictionary_;
  Runs& runs_;
  LzwCodes& out_;
  std::uint16_t* to_ = nullptr;
  std::size_t bits_ = 0;
  ClearPolicy policy_;
  std::size_t limit_;
  unsigned clear_, next_ = 0, width_ = 0;
};

// The pixels: what they may be written as, and how far the same goes on.
template <bool kChoice>
struct Pixels {
  const std::uint8_t* symbols;
  const std::uint8_t* free;
  std::size_t size;
  std::uint8_t wildcard;

  bool Takes(std::size_t i, std::uint8_t symbol) const {
    return symbols[i] == symbol || (kChoice && free[i] && symbol == wildcard);
  }
  bool Free(std::size_t i) const { return kChoice && free[i]; }
};

// The longest string at a place: its node, the node one symbol before its end, the place behind it and its first
// symbol.
struct Match {
  unsigned node, parent;
  std::size_t end;
  std::uint8_t first;
};

template <bool kChoice>
class Matcher {
 public:
  static constexpr std::size_t kLong = 16;
  Matcher(const Pixels<kChoice>& pixels, const Dictionary& dictionary, Runs& runs)
      : pixels_(pixels), dictionary_(dictionary), runs_(runs) {}

  Match Longest(std::size_t i) {
    if constexpr (kChoice) {
      if (pixels_.free[i]) {
        const Match match = Follow(i, pixels_.wildcard);
        if (pixels_.symbols[i] == pixels_.wildcard || match.end - i >= kLong) return match;
        const Match other = Follow(i, pixels_.symbols[i]);
        return other.end > match.end ? other : match;
      }
    }
    return Follow(i, pixels_.symbols[i]);
  }

 private:
  const Pixels<kChoice>& pixels_;
  const Dictionary& dictionary_;
  Runs& runs_;

  Match Follow(std::size_t i, std::uint8_t first) {
    Match match{first, kNone, i + 1, first};
    if (first == runs_.symbol && runs_.pixels[i] == runs_.value) {
      const std::size_t runEnd = runs_.EndFrom(i);
      const std::size_t length = std::min<std::size_t>(runEnd - i, runs_.longest);
      match.node = runs_.codes[length];
      if (length > 1) match.parent = runs_.codes[length - 1];
      match.end = i + length;
      if (match.end < runEnd && (!kChoice || length >= kLong)) return match;
    }
    while (match.end < pixels_.size) {
      unsigned child = kNone;
      if (pixels_.Free(match.end)) child = dictionary_.Child(match.node, pixels_.wildcard);
      if (child == kNone) child = dictionary_.Child(match.node, pixels_.symbols[match.end]);
      if (child == kNone) break;
      match.parent = match.node;
      match.node = child;
      ++match.end;
    }
    return match;
  }
};

// `cutGain`: how many symbols more than none a cut must win while the dictionary grows, because it adds no new string.
template <bool kChoice, bool kLookahead>
void CompressPixels(const Pixels<kChoice>& pixels, Matcher<kChoice> matcher, std::size_t cutGain, CodeStream& codes) {
  const std::size_t size = pixels.size;
  Match match = matcher.Longest(0);
  while (match.end < size && !codes.TooLong()) {
    const std::size_t end = match.end;
    Match next = matcher.Longest(end);
    // The string about to be added lengthens the next one if that one stops right there.
    const bool grows =
        !codes.Full() && next.node == match.node && next.end < size && pixels.Takes(next.end, next.first);
    if (kLookahead && match.parent != kNone) {
      const Match early = matcher.Longest(end - 1);
      if (early.end > next.end + (grows ? 1 : 0) + (codes.Full() ? 0 : cutGain)) {
        codes.Put(match.parent);
        if (!codes.Full()) codes.Skip(end - 1);
        match = early;
        continue;
      }
    }
    codes.Put(match.node);
    if (!codes.Full()) {
      if (grows) next = {codes.Next(), next.node, next.end + 1, next.first};
      codes.Add(match.node, next.first, end);
    } else if (codes.WantsClear(end)) {
      codes.Restart();
      next = matcher.Longest(end);
    }
    match = next;
  }
  codes.Put(match.node);
  codes.End();
}

}  // namespace

void CompressLzw(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> free, std::uint8_t wildcard,
                 int minCodeSize, LzwMode mode, std::size_t limit, LzwCodes& out) {
  static thread_local Dictionary dictionary;
  static thread_local Runs runs;
  const std::size_t cutGain = mode.clearWhenFull ? 4 : 1;
  runs.size = symbols.size();
  runs.end = 0;
  runs.symbol = wildcard;
  if (free.empty()) {
    runs.symbol = CommonSymbol(symbols);
    runs.pixels = symbols.data();
    runs.value = runs.symbol;
    CodeStream codes(dictionary, runs, minCodeSize, mode.clearWhenFull, symbols.size(), limit, out);
    const Pixels<false> pixels{symbols.data(), nullptr, symbols.size(), 0};
    const auto compress = mode.lookahead ? CompressPixels<false, true> : CompressPixels<false, false>;
    compress(pixels, {pixels, dictionary, runs}, cutGain, codes);
  } else {
    runs.pixels = free.data();
    runs.value = 1;
    CodeStream codes(dictionary, runs, minCodeSize, mode.clearWhenFull, symbols.size(), limit, out);
    const Pixels<true> pixels{symbols.data(), free.data(), symbols.size(), wildcard};
    const auto compress = mode.lookahead ? CompressPixels<true, true> : CompressPixels<true, false>;
    compress(pixels, {pixels, dictionary, runs}, cutGain, codes);
  }
}

void PackLzw(const LzwCodes& codes, std::vector<std::uint8_t>& out) {
  const unsigned clear = 1u << codes.minCodeSize;
  out.resize((codes.bits + 7) / 8 + 8);
  BitWriter writer{out.data()};
  unsigned next = clear + 1, width = FirstWidth(clear);
  for (const unsigned code : std::span(codes.codes).first(codes.count)) {
    writer.Put(code, width);
    if (code == clear) {
      next = clear + 1;  // the first code after a clear adds no string
      width = FirstWidth(clear);
      continue;
    }
    if (next < kCodes) ++next;
    if (next == 1u << width && width < 12) ++width;
  }
  writer.Flush();
  out.resize((codes.bits + 7) / 8);
}

}  // namespace glyphmotion
