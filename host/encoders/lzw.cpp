// SPDX-License-Identifier: MIT
// The dictionary is a trie of strings. Codes are collected unpacked, with their length in bits only counted: all but
// one of the attempts at a frame are discarded, and the winner may still change its literals before it is packed.
#include "host/encoders/lzw.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace glyphmotion {
namespace {

constexpr unsigned kCodes = 4096;
constexpr unsigned kNoChild = 0;  // no string of several symbols has the code of a literal
constexpr unsigned kNone = 0xFFFF;

// A table of all nodes and symbols. A look-up is one load: a hash table of 128 KiB, with the first children apart in
// 16 KiB, was slower, because the branch between them is hard to predict.
class Dictionary {
 public:
  Dictionary() : children_(static_cast<std::uint16_t*>(std::calloc(std::size_t{kCodes} << 8, sizeof(std::uint16_t)))) {
    if (!children_) throw std::bad_alloc();
  }
  // Forgets all strings; those of one symbol, below 2^bits, are the first nodes.
  void Clear(unsigned bits) {
    for (std::size_t i = 0; i < count_; ++i) children_[used_[i]] = kNoChild;
    count_ = 0;
    bits_ = bits;
  }
  // The child's code, or kNoChild.
  unsigned Child(unsigned node, unsigned symbol) const { return children_[node << bits_ | symbol]; }
  // Adds a child, or gives it another code.
  void Insert(unsigned node, unsigned symbol, unsigned code) {
    const std::uint32_t at = node << bits_ | symbol;
    if (children_[at] == kNoChild) used_[count_++] = at;
    children_[at] = static_cast<std::uint16_t>(code);
  }

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };
  unsigned bits_ = 8;
  std::size_t count_ = 0;                            // of `used_`
  std::array<std::uint32_t, kCodes> used_;           // entries of `children_` that have a child
  std::unique_ptr<std::uint16_t[], Free> children_;  // by node << bits_ | symbol
};

// Writes to memory with room for eight bytes past the end.
struct BitWriter {
  std::uint8_t* to;
  std::uint64_t bits = 0;
  unsigned count = 0;  // pending bits, 0 to 7

  // At most 56 bits.
  void Put(std::uint64_t value, unsigned width) {
    bits |= value << count;
    count += width;
    for (unsigned i = 0; i < 8; ++i) to[i] = static_cast<std::uint8_t>(bits >> (8 * i));
    to += count / 8;
    bits >>= count & ~7u;
    count &= 7;
  }
};

// Decides when a full dictionary is no longer worth keeping: compares the mean length of matched strings, a window of
// codes at a time, with the best window since the dictionary was full.
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

// Codes of the strings of one repeated symbol, by length. Across the background of a picture the matcher does not have
// to follow every pixel.
struct Runs {
  const std::uint8_t* pixels = nullptr;  // searched: symbols, or flags of free pixels
  std::size_t size = 0;
  std::uint8_t value = 0;   // of the pixels
  std::uint8_t symbol = 0;  // of the strings
  unsigned longest = 1;
  std::array<std::uint16_t, kCodes> codes;
  std::size_t end = 0;  // of the last run

  void Clear() {
    longest = 1;
    codes[1] = symbol;
  }
  void Added(unsigned node, unsigned last, unsigned code) {
    if (last == symbol && node == codes[longest]) codes[++longest] = static_cast<std::uint16_t>(code);
  }
  // The end of the run that contains `i`. Positions may go back only within a run.
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

// The symbol that most often repeats, estimated from a sample.
std::uint8_t CommonSymbol(std::span<const std::uint8_t> symbols) {
  std::array<std::uint32_t, 256> count{};
  for (std::size_t i = 1; i < symbols.size(); i += 61)
    if (symbols[i] == symbols[i - 1]) ++count[symbols[i]];
  return static_cast<std::uint8_t>(std::max_element(count.begin(), count.end()) - count.begin());
}

// Collects codes and keeps the code width in step with the decoder's.
class CodeStream {
 public:
  CodeStream(Dictionary& dictionary, Runs& runs, int minCodeSize, bool clearWhenFull, std::size_t symbols,
             const LzwRival& rival, LzwCodes& out)
      : dictionary_(&dictionary),
        runs_(&runs),
        out_(&out),
        policy_{clearWhenFull},
        rival_(rival),
        symbols_(symbols),
        limit_(rival.limit),
        clear_(1u << minCodeSize),
        width_(FirstWidth(clear_)) {
    // A clear comes at most once in a thousand symbols, except as the first or the last code.
    const std::size_t most = symbols + symbols / 1000 + 4;
    if (out.codes.size() < most) out.codes.resize(most);
    to_ = counted_ = out.codes.data();
    out.minCodeSize = minCodeSize;
    out.marks.clear();
    Restart(0);
  }
  void Restart(std::size_t position) {
    Put(clear_);
    SetWidth(FirstWidth(clear_), position);
    dictionary_->Clear(FirstWidth(clear_) - 1);
    runs_->Clear();
    next_ = clear_ + 2;
  }
  void Put(unsigned node) { *to_++ = static_cast<std::uint16_t>(node); }
  // Bits are counted at every change of the width, and periodically while the dictionary is full.
  bool TooLong() const { return bits_ > limit_; }
  bool Full() const { return next_ == kCodes; }
  unsigned Next() const { return next_; }
  // Adds the string of `node` plus one symbol, which must be new. Not when full.
  void Add(unsigned node, unsigned symbol, std::size_t position) {
    dictionary_->Insert(node, symbol, next_);
    runs_->Added(node, symbol, next_);
    Skip(position);
  }
  // The decoder adds a string that exists already.
  void Skip(std::size_t position) {
    if (next_ == 1u << width_) SetWidth(width_ + 1, position);
    if (++next_ == kCodes) policy_.Full(position);
  }
  bool WantsClear(std::size_t position) {
    const bool wants = policy_.WantsClear(position);
    if (policy_.codes == 0) SetWidth(width_, position);
    return wants;
  }
  // The decoder also adds a string for the last code.
  void End() {
    if (next_ < kCodes && next_ == 1u << width_) Count(), ++width_;
    Put(clear_ + 1);
    Count();
    out_->count = static_cast<std::size_t>(to_ - out_->codes.data());
    out_->bits = bits_ > limit_ ? std::max(bits_, rival_.limit + 1) : bits_;
  }

 private:
  Dictionary* dictionary_;
  Runs* runs_;
  LzwCodes* out_;
  std::uint16_t *to_ = nullptr, *counted_ = nullptr;  // codes up to here are included in the bits
  std::size_t bits_ = 0;
  ClearPolicy policy_;
  LzwRival rival_;
  std::size_t symbols_, limit_;
  std::size_t mark_ = 0;  // of the rival, the first that may lie ahead
  unsigned clear_, next_ = 0, width_ = 0;

  void Count() {
    bits_ += static_cast<std::size_t>(to_ - counted_) * width_;
    counted_ = to_;
  }
  // Applies to the codes from here on; those before it cover the symbols up to `position`, or one less.
  void SetWidth(unsigned width, std::size_t position) {
    Count();
    width_ = width;
    out_->marks.push_back({position, bits_});
    if (HasFallenBehind(position)) limit_ = 0;
  }
  // The closer to the end, the smaller the lead that the rival may have.
  bool HasFallenBehind(std::size_t position) {
    while (mark_ < rival_.marks.size() && rival_.marks[mark_].symbols < position) ++mark_;
    if (mark_ == rival_.marks.size()) return false;
    const std::size_t its = rival_.marks[mark_].bits;
    return bits_ > its && (bits_ - its) * position > its * (position / 128 + symbols_ / 256);
  }
};

// The pixels: how they may be written, and how far a run of equal ones reaches.
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

// The longest match at a position: its node, the node one symbol before its end, the position after it and its first
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
  Matcher(const Pixels<kChoice>& pixels, Dictionary& dictionary, Runs& runs)
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
  Dictionary& dictionary_;
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
      unsigned child = kNoChild;
      if (pixels_.Free(match.end)) child = dictionary_.Child(match.node, pixels_.wildcard);
      if (child == kNoChild) child = dictionary_.Child(match.node, pixels_.symbols[match.end]);
      if (child == kNoChild) break;
      match.parent = match.node;
      match.node = child;
      ++match.end;
    }
    return match;
  }
};

// Compresses from `begin` on, with choices or look-ahead. Returns the end position: after the last symbol or, with
// look-ahead only while the dictionary is full, where it has been cleared.
template <bool kChoice>
std::size_t CompressCarefully(const Pixels<kChoice>& pixels, Matcher<kChoice> matcher, std::size_t begin, LzwMode mode,
                              CodeStream& codes) {
  // The least gain in symbols of a cut while the dictionary grows, because a cut adds no new string.
  const std::size_t cutGain = mode.clearWhenFull ? 4 : 1;
  const std::size_t size = pixels.size;
  Match match = matcher.Longest(begin);
  while (match.end < size && !codes.TooLong()) {
    const std::size_t end = match.end;
    Match next = matcher.Longest(end);
    // The string about to be added extends the next match if that one ends right there.
    const bool grows =
        !codes.Full() && next.node == match.node && next.end < size && pixels.Takes(next.end, next.first);
    const bool looksAhead =
        mode.lookahead == Lookahead::Always || (mode.lookahead == Lookahead::WhenFull && codes.Full());
    if (looksAhead && match.parent != kNone) {
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
      codes.Restart(end);
      if (mode.lookahead == Lookahead::WhenFull) return end;
      next = matcher.Longest(end);
    }
    match = next;
  }
  codes.Put(match.node);
  return size;
}

// Compresses without either: the same codes by a faster loop, in which the writer spends most of its time. Ends after
// the last symbol, or where the dictionary is full and look-ahead begins.
std::size_t CompressGreedily(const Pixels<false>& pixels, Dictionary& dictionary, Runs& runs, std::size_t begin,
                             bool untilFull, CodeStream& stream) {
  const std::uint8_t* const symbols = pixels.symbols;
  const std::size_t size = pixels.size;
  const unsigned common = runs.symbol;
  CodeStream codes = stream;
  std::size_t i = begin;
  while (true) {
    unsigned node = symbols[i], symbol = node;
    if (node == common) {
      const std::size_t length = std::min<std::size_t>(runs.EndFrom(i) - i, runs.longest);
      node = runs.codes[length];
      i += length;
    } else {
      ++i;
    }
    while (i < size) {
      symbol = symbols[i];
      const unsigned child = dictionary.Child(node, symbol);
      if (child == kNoChild) break;
      node = child;
      ++i;
    }
    codes.Put(node);
    if (i == size) break;
    if (!codes.Full()) {
      codes.Add(node, symbol, i);
      if (untilFull && codes.Full()) break;
    } else if (codes.WantsClear(i)) {
      codes.Restart(i);
    }
    if (codes.TooLong()) {
      i = size;
      break;
    }
  }
  stream = codes;
  return i;
}

}  // namespace

struct LzwCompressor::Memory {
  Dictionary dictionary;
  Runs runs;
};

LzwCompressor::LzwCompressor() : memory_(std::make_unique<Memory>()) {}
LzwCompressor::~LzwCompressor() = default;

void LzwCompressor::Compress(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> free,
                             std::uint8_t wildcard, int minCodeSize, LzwMode mode, const LzwRival& rival,
                             LzwCodes& out) {
  Dictionary& dictionary = memory_->dictionary;
  Runs& runs = memory_->runs;
  const std::size_t size = symbols.size();
  runs.size = size;
  runs.end = 0;
  if (free.empty()) {
    runs.symbol = runs.value = CommonSymbol(symbols);
    runs.pixels = symbols.data();
  } else {
    runs.symbol = wildcard;
    runs.value = 1;
    runs.pixels = free.data();
  }
  CodeStream codes(dictionary, runs, minCodeSize, mode.clearWhenFull, size, rival, out);
  if (free.empty()) {
    const Pixels<false> pixels{symbols.data(), nullptr, size, 0};
    const bool whenFull = mode.lookahead == Lookahead::WhenFull;
    for (std::size_t i = 0; i < size;) {
      if (mode.lookahead != Lookahead::Always) i = CompressGreedily(pixels, dictionary, runs, i, whenFull, codes);
      if (i < size) i = CompressCarefully<false>(pixels, {pixels, dictionary, runs}, i, mode, codes);
    }
  } else {
    const Pixels<true> pixels{symbols.data(), free.data(), size, wildcard};
    for (std::size_t i = 0; i < size;) i = CompressCarefully<true>(pixels, {pixels, dictionary, runs}, i, mode, codes);
  }
  codes.End();
}

void PackLzw(const LzwCodes& codes, std::vector<std::uint8_t>& out) {
  const unsigned clear = 1u << codes.minCodeSize;
  out.resize((codes.bits + 7) / 8 + 8);
  BitWriter writer{out.data()};
  unsigned width = FirstWidth(clear);
  std::size_t left = 0;  // codes of this width, unless a clear comes first
  const std::uint16_t *code = codes.codes.data(), *const end = code + codes.count;
  while (code < end) {
    const unsigned first = *code++;
    writer.Put(first, width);
    if (first == clear) {
      width = FirstWidth(clear);
      left = clear - 1;  // the first of them adds no string
      continue;
    }
    if (--left == 0 && width < 12) left = std::size_t{1} << width++;
    // Four codes at once.
    const std::size_t most = width < 12 ? left - 1 : SIZE_MAX;
    const std::uint16_t* const stop = code + std::min<std::size_t>(most, static_cast<std::size_t>(end - code)) / 4 * 4;
    for (; code < stop && code[0] != clear && code[1] != clear && code[2] != clear && code[3] != clear; code += 4) {
      writer.Put(code[0] | code[1] << width | std::uint64_t{code[2]} << 2 * width | std::uint64_t{code[3]} << 3 * width,
                 4 * width);
      left -= 4;
    }
  }
  out.resize((codes.bits + 7) / 8);
}

}  // namespace glyphmotion
