// SPDX-License-Identifier: MIT
// The dictionary is a trie of strings. Two tables serve it: `repeat` gives the child of a node by the node's own last
// symbol, which carries runs of one colour at one load a pixel; a small hash table gives all other children.
#include "host/lzw.h"

#include <array>
#include <cstring>

namespace glyphmotion {
namespace {

constexpr unsigned kCodes = 4096;
constexpr unsigned kHashBits = 13;
constexpr std::uint16_t kNone = 0xFFFF;

struct Dictionary {
  std::array<std::uint32_t, 1u << kHashBits> table;  // (prefix << 8 | symbol) << 12 | code; codes are never 0 here
  std::array<std::uint16_t, kCodes> repeat;
  std::array<std::uint8_t, kCodes> last;

  void Clear(unsigned symbols) {
    table.fill(0);
    repeat.fill(kNone);
    for (unsigned i = 0; i < symbols; ++i) last[i] = static_cast<std::uint8_t>(i);
  }
  static unsigned Slot(unsigned key) { return (key * 0x9E3779B1u) >> (32 - kHashBits); }

  unsigned Child(unsigned node, unsigned symbol) const {
    if (last[node] == symbol) return repeat[node];
    const unsigned key = node << 8 | symbol;
    for (unsigned slot = Slot(key);; slot = (slot + 1) & ((1u << kHashBits) - 1)) {
      const std::uint32_t entry = table[slot];
      if (entry >> 12 == key && entry) return entry & 0xFFF;
      if (!entry) return kNone;
    }
  }
  void Insert(unsigned node, unsigned symbol, unsigned code) {
    last[code] = static_cast<std::uint8_t>(symbol);
    if (last[node] == symbol) {
      repeat[node] = static_cast<std::uint16_t>(code);
      return;
    }
    const unsigned key = node << 8 | symbol;
    unsigned slot = Slot(key);
    while (table[slot]) slot = (slot + 1) & ((1u << kHashBits) - 1);
    table[slot] = key << 12 | code;
  }
};

struct BitWriter {
  std::vector<std::uint8_t>& out;
  std::uint64_t bits = 0;
  unsigned count = 0;

  void Put(unsigned code, unsigned width) {
    bits |= std::uint64_t{code} << count;
    count += width;
    if (count < 32) return;
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
    bits >>= 32;
    count -= 32;
  }
  void Flush() {
    for (; count > 0; count -= count < 8 ? count : 8, bits >>= 8) out.push_back(static_cast<std::uint8_t>(bits));
  }
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

// Emits codes and keeps the code width in step with what a decoder has.
class CodeStream {
 public:
  CodeStream(Dictionary& dictionary, int minCodeSize, bool clearWhenFull, std::vector<std::uint8_t>& out)
      : dictionary_(dictionary),
        writer_{out},
        policy_{clearWhenFull},
        clear_(1u << minCodeSize),
        width_(MinimumWidth()) {
    Restart();
  }
  void Restart() {
    writer_.Put(clear_, width_);
    dictionary_.Clear(clear_);
    next_ = clear_ + 2;
    width_ = MinimumWidth();
  }
  void Put(unsigned node) { writer_.Put(node, width_); }
  bool Full() const { return next_ == kCodes; }
  unsigned Next() const { return next_; }
  // The string of `node` and one more symbol becomes a string. Not when full.
  void Add(unsigned node, unsigned symbol, std::size_t position) {
    dictionary_.Insert(node, symbol, next_);
    if (next_ == 1u << width_) ++width_;
    if (++next_ == kCodes) policy_.Full(position);
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
    writer_.Put(clear_ + 1, width_);
    writer_.Flush();
  }

 private:
  unsigned MinimumWidth() const {
    unsigned width = 1;
    while ((1u << width) <= clear_) ++width;
    return width;
  }

  Dictionary& dictionary_;
  BitWriter writer_;
  ClearPolicy policy_;
  unsigned clear_, next_ = 0, width_ = 0;
};

void CompressPlain(std::span<const std::uint8_t> symbols, const Dictionary& dictionary, CodeStream& codes) {
  const std::size_t size = symbols.size();
  for (std::size_t i = 0; i < size;) {
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
  while (match.end < size) {
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
  for (std::size_t i = 0; i < size;) {
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
                 int minCodeSize, LzwMode mode, std::vector<std::uint8_t>& out) {
  static thread_local Dictionary dictionary;
  CodeStream codes(dictionary, minCodeSize, mode.clearWhenFull, out);
  if (free.empty() && mode.lookahead) {
    CompressWithLookahead(symbols, dictionary, mode.clearWhenFull ? 4 : 1, codes);
  } else if (free.empty()) {
    CompressPlain(symbols, dictionary, codes);
  } else {
    CompressWithChoice({dictionary, symbols, free.data(), wildcard}, symbols.size(), codes);
  }
}

namespace {

// How many bits the next code has, from the codes so far.
struct CodeWidth {
  unsigned clear, next = 0, width = 0;
  explicit CodeWidth(int minCodeSize) : clear(1u << minCodeSize) { Restart(); }
  void Restart() {
    next = clear + 1;  // the first code after a clear adds no string
    width = 1;
    while ((1u << width) <= clear) ++width;
  }
  void Advance() {
    if (next < kCodes) ++next;
    if (next == 1u << width && width < 12) ++width;
  }
};

}  // namespace

bool RenumberLzw(std::span<const std::uint8_t> compressed, int minCodeSize, int newMinCodeSize,
                 const std::array<std::uint8_t, 256>& literal, std::vector<std::uint8_t>& out) {
  CodeWidth from(minCodeSize), to(newMinCodeSize);
  BitWriter writer{out};
  std::uint64_t bits = 0;
  unsigned count = 0;
  for (std::size_t i = 0;;) {
    for (; count < from.width; count += 8) {
      if (i == compressed.size()) return false;
      bits |= std::uint64_t{compressed[i++]} << count;
    }
    const unsigned code = static_cast<unsigned>(bits) & ((1u << from.width) - 1);
    bits >>= from.width;
    count -= from.width;
    const unsigned renumbered = code < from.clear ? literal[code] : code - from.clear + to.clear;
    if (renumbered >= kCodes) return false;
    writer.Put(renumbered, to.width);
    if (code == from.clear) {
      from.Restart();
      to.Restart();
    } else if (code == from.clear + 1) {
      writer.Flush();
      return true;
    } else {
      from.Advance();
      to.Advance();
    }
  }
}

}  // namespace glyphmotion
