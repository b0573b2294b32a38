// SPDX-License-Identifier: MIT
// The dictionary is a trie of strings: one small hash table, which stays in the nearest cache, holds the child of each
// node by symbol. Codes are collected unpacked, and their length in bits is only counted: of several attempts at a
// frame all but one are thrown away, and the winner may still change its literals before it is packed.
#include "host/lzw.h"

#include <algorithm>

namespace glyphmotion {
namespace {

constexpr unsigned kCodes = 4096;
constexpr unsigned kHashBits = 13;
constexpr unsigned kNone = 0xFFFF;

// Most nodes have one child or none: the first stands beside its parent, and one exclusive or with the symbol looked for
// gives its code, or something larger. The others are in a hash table, by node and symbol.
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

// Collects codes and keeps the code width in step with what a decoder has.
class CodeStream {
 public:
  CodeStream(Dictionary& dictionary, int minCodeSize, bool clearWhenFull, std::size_t symbols, std::size_t limit,
             LzwCodes& out)
      : dictionary_(dictionary),
        out_(out),
        policy_{clearWhenFull},
        limit_(limit),
        clear_(1u << minCodeSize),
        width_(FirstWidth(clear_)) {
    // A clear stands for at least a thousand symbols, or it is the first or the last code.
    out.codes.resize(symbols + symbols / 1000 + 4);
    to_ = out.codes.data();
    out.minCodeSize = minCodeSize;
    Restart();
  }
  void Restart() {
    Put(clear_);
    dictionary_.Clear(kCodes);
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
    out_.codes.resize(static_cast<std::size_t>(to_ - out_.codes.data()));
    out_.bits = bits_;
  }

 private:
  Dictionary& dictionary_;
  LzwCodes& out_;
  std::uint16_t* to_ = nullptr;
  std::size_t bits_ = 0;
  ClearPolicy policy_;
  std::size_t limit_;
  unsigned clear_, next_ = 0, width_ = 0;
};

void CompressPlain(std::span<const std::uint8_t> symbols, const Dictionary& dictionary, CodeStream& codes) {
  const std::size_t size = symbols.size();
  for (std::size_t i = 0; i < size && !codes.TooLong();) {
    unsigned node = symbols[i];
    unsigned child = kNone;
    while (++i < size && (child = dictionary.Child(node, symbols[i])) != kNone) node = child;
    codes.Put(node);
    if (i == size) break;
    if (!codes.Full()) {
      codes.Add(node, symbols[i], i);
    } else if (codes.WantsClear(i)) {
      codes.Restart();
    }
  }
  codes.End();
}

// The longest string at a place: its node, the node one symbol before its end, and the place behind it.
struct Match {
  unsigned node, parent;
  std::size_t end;
};
Match LongestMatch(std::span<const std::uint8_t> symbols, const Dictionary& dictionary, std::size_t i) {
  Match match{symbols[i], kNone, i + 1};
  while (match.end < symbols.size()) {
    const unsigned child = dictionary.Child(match.node, symbols[match.end]);
    if (child == kNone) break;
    match.parent = match.node;
    match.node = child;
    ++match.end;
  }
  return match;
}

// `cutGain`: how many symbols more than none a cut must win while the dictionary grows, because it adds no new string.
void CompressWithLookahead(std::span<const std::uint8_t> symbols, const Dictionary& dictionary, std::size_t cutGain,
                           CodeStream& codes) {
  const std::size_t size = symbols.size();
  Match match = LongestMatch(symbols, dictionary, 0);
  while (match.end < size && !codes.TooLong()) {
    const std::size_t end = match.end;
    Match next = LongestMatch(symbols, dictionary, end);
    // The string about to be added lengthens the next one if that one stops right there.
    const bool grows = !codes.Full() && next.node == match.node && next.end < size && symbols[next.end] == symbols[end];
    if (match.parent != kNone) {
      const Match early = LongestMatch(symbols, dictionary, end - 1);
      if (early.end > next.end + (grows ? 1 : 0) + (codes.Full() ? 0 : cutGain)) {
        codes.Put(match.parent);
        if (!codes.Full()) codes.Skip(end - 1);
        match = early;
        continue;
      }
    }
    codes.Put(match.node);
    if (!codes.Full()) {
      if (grows) next = {codes.Next(), next.node, next.end + 1};
      codes.Add(match.node, symbols[end], end);
    } else if (codes.WantsClear(end)) {
      codes.Restart();
      next = LongestMatch(symbols, dictionary, end);
    }
    match = next;
  }
  codes.Put(match.node);
  codes.End();
}

// A string that agrees with the pixels so far. `first` is its first symbol, on which the string depends that the
// decoder has just begun to add: the one before and `first`.
struct Candidate {
  std::uint16_t node;
  std::uint8_t first;
};
constexpr int kCandidates = 4;

// Follows all ways through the dictionary that agree with the pixels, a few at a time, and takes the longest.
class ChoiceMatcher {
 public:
  ChoiceMatcher(const Dictionary& dictionary, std::span<const std::uint8_t> symbols, const std::uint8_t* free,
                std::uint8_t wildcard)
      : dictionary_(dictionary), symbols_(symbols), free_(free), wildcard_(wildcard) {}

  // The longest string from `i` on, which is moved behind it. `previous` is the string before, `next` the code that it
  // will have together with the first symbol of this one; kNone when there is none.
  Candidate Match(std::size_t& i, unsigned previous, unsigned next) {
    std::array<Candidate, kCandidates> now{}, then{};
    int count = 0;
    if (free_[i]) now[static_cast<std::size_t>(count++)] = {wildcard_, wildcard_};
    if (!free_[i] || symbols_[i] != wildcard_) now[static_cast<std::size_t>(count++)] = {symbols_[i], symbols_[i]};
    for (++i; i < symbols_.size(); ++i) {
      int found = 0;
      const auto follow = [&](const Candidate& from, unsigned symbol) {
        if (found == kCandidates) return;
        unsigned child = dictionary_.Child(from.node, symbol);
        if (child == kNone && from.node == previous && symbol == from.first) child = next;
        if (child != kNone) then[static_cast<std::size_t>(found++)] = {static_cast<std::uint16_t>(child), from.first};
      };
      for (int c = 0; c < count; ++c) {
        const Candidate& from = now[static_cast<std::size_t>(c)];
        if (free_[i]) follow(from, wildcard_);
        follow(from, symbols_[i]);
      }
      if (found == 0) break;
      now = then;
      count = found;
    }
    return now[0];
  }

 private:
  const Dictionary& dictionary_;
  std::span<const std::uint8_t> symbols_;
  const std::uint8_t* free_;
  std::uint8_t wildcard_;
};

void CompressWithChoice(ChoiceMatcher matcher, std::size_t size, CodeStream& codes) {
  unsigned previous = kNone;
  for (std::size_t i = 0; i < size && !codes.TooLong();) {
    const std::size_t start = i;
    const Candidate match = matcher.Match(i, previous, codes.Full() ? kNone : codes.Next());
    if (previous != kNone && !codes.Full()) codes.Add(previous, match.first, start);
    codes.Put(match.node);
    previous = match.node;
    if (codes.Full() && i < size && codes.WantsClear(i)) {
      codes.Restart();
      previous = kNone;
    }
  }
  codes.End();
}

}  // namespace

void CompressLzw(std::span<const std::uint8_t> symbols, std::span<const std::uint8_t> free, std::uint8_t wildcard,
                 int minCodeSize, LzwMode mode, std::size_t limit, LzwCodes& out) {
  static thread_local Dictionary dictionary;
  CodeStream codes(dictionary, minCodeSize, mode.clearWhenFull, symbols.size(), limit, out);
  if (free.empty() && mode.lookahead) {
    CompressWithLookahead(symbols, dictionary, mode.clearWhenFull ? 4 : 1, codes);
  } else if (free.empty()) {
    CompressPlain(symbols, dictionary, codes);
  } else {
    CompressWithChoice({dictionary, symbols, free.data(), wildcard}, symbols.size(), codes);
  }
}

std::array<bool, 256> LiteralsOf(const LzwCodes& codes) {
  std::array<bool, 4096> seen{};
  for (const std::uint16_t code : codes.codes) seen[code] = true;
  std::array<bool, 256> literals{};
  std::copy_n(seen.begin(), std::size_t{1} << codes.minCodeSize, literals.begin());
  return literals;
}

bool PackLzw(const LzwCodes& codes, int minCodeSize, const std::array<std::uint8_t, 256>& literal,
             std::vector<std::uint8_t>& out) {
  const unsigned oldClear = 1u << codes.minCodeSize, clear = 1u << minCodeSize;
  const std::size_t start = out.size();
  out.resize(start + codes.codes.size() * 12 / 8 + 8);
  BitWriter writer{out.data() + start};
  unsigned next = clear + 1, width = FirstWidth(clear);
  for (const unsigned code : codes.codes) {
    const unsigned renumbered = code < oldClear ? literal[code] : code - oldClear + clear;
    if (renumbered >= kCodes) return false;
    writer.Put(renumbered, width);
    if (renumbered == clear) {
      next = clear + 1;  // the first code after a clear adds no string
      width = FirstWidth(clear);
      continue;
    }
    if (next < kCodes) ++next;
    if (next == 1u << width && width < 12) ++width;
  }
  writer.Flush();
  out.resize(static_cast<std::size_t>(writer.to - out.data()));
  return true;
}

}  // namespace glyphmotion
