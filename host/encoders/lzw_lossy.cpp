// SPDX-License-Identifier: MIT
// At each position the dictionary is searched for all strings whose every symbol is near enough to the pixel's own. Of
// these, and of all places where such a string may end, the one is taken that is worth most: it saves the bits that its
// pixels would take otherwise, and costs its errors.
#include "host/encoders/lzw_lossy.h"

#include <algorithm>
#include <array>

namespace glyphmotion {
namespace {

constexpr unsigned kCodes = 4096;

// A string that ends early adds one to the dictionary that exists already: what that costs, in pixels.
constexpr double kCutCost = 1;

/// The strings as a tree: each node has a symbol, its first child and its next sibling. Code 0 as a link is "none":
/// literals are nobody's children.
struct Tree {
  struct Node {
    std::uint16_t child, sibling;
    std::uint8_t symbol;
  };
  std::array<Node, kCodes> nodes;

  void Clear(unsigned literals) {
    for (unsigned i = 0; i < literals; ++i) nodes[i] = {0, 0, static_cast<std::uint8_t>(i)};
  }
  bool HasChild(unsigned node, std::uint8_t symbol) const {
    for (unsigned c = nodes[node].child; c; c = nodes[c].sibling)
      if (nodes[c].symbol == symbol) return true;
    return false;
  }
  void Insert(unsigned node, std::uint8_t symbol, unsigned code) {
    nodes[code] = {0, nodes[node].child, symbol};
    nodes[node].child = static_cast<std::uint16_t>(code);
  }
};

/// A string at a position, or the part of one that is still being followed.
struct Match {
  unsigned node = 0;
  std::size_t length = 0;
  std::uint64_t error = 0;
  double worth = 0;  // in bits
};

/// Codes, and the width that they have in the file.
class Codes {
 public:
  Codes(LzwCodes& out, int minCodeSize, std::size_t symbols) : out_(out), clear_(1u << minCodeSize) {
    // A clear comes at most once in so many codes, besides the first; then the end.
    const std::size_t most = symbols + symbols / 1000 + 4;
    if (out.codes.size() < most) out.codes.resize(most);
    out.minCodeSize = minCodeSize;
    out.count = out.bits = 0;
    out.marks.clear();
    width_ = FirstWidth();
    Restart();
  }
  void Restart() {
    Put(clear_);
    width_ = FirstWidth();
    next_ = clear_ + 2;
  }
  void Put(unsigned code) {
    out_.codes[out_.count++] = static_cast<std::uint16_t>(code);
    out_.bits += width_;
  }
  bool Full() const { return next_ == kCodes; }
  unsigned Width() const { return width_; }
  // The code of the string that the decoder adds now. Not when full.
  unsigned Take() {
    if (next_ == 1u << width_) ++width_;
    return next_++;
  }
  void End() {
    if (!Full() && next_ == 1u << width_) ++width_;
    Put(clear_ + 1);
  }

 private:
  LzwCodes& out_;
  unsigned clear_, next_ = 0, width_ = 0;

  unsigned FirstWidth() const {
    unsigned width = 1;
    while ((1u << width) <= clear_) ++width;
    return width;
  }
};

/// By symbol: those that may be written for it.
using Neighbours = std::array<std::vector<std::uint8_t>, 256>;

}  // namespace

struct LossyLzwCompressor::Memory {
  Tree tree;
  std::vector<Match> open;  // matches to be followed
  Neighbours near;
};

namespace {

void FindNear(Neighbours& near, unsigned literals, int wildcard, const SlotErrors& errors, unsigned most) {
  for (unsigned a = 0; a < literals; ++a) {
    near[a].clear();
    for (unsigned b = 0; b < literals; ++b)
      if (static_cast<int>(b) != wildcard && errors[std::size_t{a} << 8 | b] <= most)
        near[a].push_back(static_cast<std::uint8_t>(b));
  }
}

/// One frame's compression.
struct Search {
  const LossyPixels& pixels;
  const SlotErrors& errors;
  const LossyLimits& limits;
  const Tree& tree;
  std::vector<Match>& open;
  const Neighbours& near;
  double bitsPerPixel = 4;  // what a pixel has taken lately

  unsigned ErrorAt(std::size_t i, std::uint8_t symbol) const {
    if (symbol == pixels.wildcard) return pixels.wildcardError[i];
    if (pixels.mustHide[i]) return kForbidden;
    return errors[std::size_t{pixels.symbols[i]} << 8 | symbol];
  }
  double Worth(const Match& match) const {
    return static_cast<double>(match.length) * bitsPerPixel - static_cast<double>(match.error) * limits.bitsPerError;
  }

  void Start(std::size_t i, std::uint8_t symbol) {
    const unsigned error = ErrorAt(i, symbol);
    if (error <= limits.most) open.push_back({symbol, 1, error});
  }

  // The string at position i that is worth most.
  Match Best(std::size_t i) {
    Match best;
    open.clear();
    if (!pixels.mustHide[i])
      for (const std::uint8_t symbol : near[pixels.symbols[i]]) Start(i, symbol);
    if (pixels.wildcard >= 0) Start(i, static_cast<std::uint8_t>(pixels.wildcard));
    while (!open.empty()) {
      Match match = open.back();
      open.pop_back();
      match.worth = Worth(match);
      if (best.length == 0 || match.worth > best.worth) best = match;
      const std::size_t at = i + match.length;
      if (at == pixels.symbols.size()) continue;
      for (unsigned c = tree.nodes[match.node].child; c; c = tree.nodes[c].sibling) {
        const unsigned error = ErrorAt(at, tree.nodes[c].symbol);
        if (error <= limits.most) open.push_back({c, match.length + 1, match.error + error});
      }
    }
    return best;
  }
};

}  // namespace

LossyLzwCompressor::LossyLzwCompressor() : memory_(std::make_unique<Memory>()) {}
LossyLzwCompressor::~LossyLzwCompressor() = default;

void LossyLzwCompressor::Compress(const LossyPixels& pixels, const SlotErrors& errors, int minCodeSize,
                                  const LossyLimits& limits, LzwCodes& out, std::vector<std::uint8_t>& written) {
  const std::size_t size = pixels.symbols.size();
  const unsigned literals = 1u << minCodeSize;
  Memory& memory = *memory_;
  FindNear(memory.near, literals, pixels.wildcard, errors, limits.most);
  memory.tree.Clear(literals);
  Codes codes(out, minCodeSize, size);
  Search search{pixels, errors, limits, memory.tree, memory.open, memory.near};
  written.resize(size);
  std::array<std::uint8_t, kCodes> firsts;  // of the strings
  std::array<std::uint16_t, kCodes> parents{};
  for (unsigned i = 0; i < literals; ++i) firsts[i] = static_cast<std::uint8_t>(i);
  Match match = search.Best(0);
  const auto extendEarly = [&](std::size_t i, Match& best, Match& next) {
    if (best.length < 2) return;
    const std::size_t last = i + best.length - 1;
    Match shorter{parents[best.node], best.length - 1,
                  best.error - search.ErrorAt(last, memory.tree.nodes[best.node].symbol)};
    shorter.worth = search.Worth(shorter);
    const Match early = search.Best(last);
    const double cut = codes.Full() ? 0.0 : kCutCost * search.bitsPerPixel;
    if (shorter.worth + early.worth <= best.worth + next.worth + cut) return;
    best = shorter;
    next = early;
  };
  for (std::size_t i = 0; !stop_ || !*stop_;) {
    Match next;
    if (i + match.length < size) {
      next = search.Best(i + match.length);
      extendEarly(i, match, next);
    }
    for (unsigned node = match.node, at = static_cast<unsigned>(match.length); at--; node = parents[node])
      written[i + at] = memory.tree.nodes[node].symbol;
    codes.Put(match.node);
    search.bitsPerPixel +=
        (static_cast<double>(codes.Width()) - search.bitsPerPixel * static_cast<double>(match.length)) / 512;
    search.bitsPerPixel = std::max(search.bitsPerPixel, 0.01);
    i += match.length;
    if (i == size) break;
    if (!codes.Full()) {
      const std::uint8_t first = firsts[next.node];
      const unsigned code = codes.Take();
      // The decoder adds a string in any case; one that exists already is of no use.
      if (!memory.tree.HasChild(match.node, first)) {
        memory.tree.Insert(match.node, first, code);
        firsts[code] = firsts[match.node];
        parents[code] = static_cast<std::uint16_t>(match.node);
      }
    } else {
      // With loss, short new strings are worth more than those of a full dictionary.
      codes.Restart();
      memory.tree.Clear(literals);
      next = search.Best(i);
    }
    match = next;
  }
  codes.End();
}

}  // namespace glyphmotion
