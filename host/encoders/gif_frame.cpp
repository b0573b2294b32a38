// SPDX-License-Identifier: MIT
// A frame is compressed with each strategy for its free pixels, and the best strategy then with the compressor's other
// modes. That is affordable because the bits of an attempt are only counted, not packed, and because most
// attempts soon fall behind the best one and are abandoned.
#include "host/encoders/gif_frame.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

// The lowest slot in neither set, or 256.
int Gap(const std::array<bool, 256>& a, const std::array<bool, 256>& b) {
  int slot = 0;
  while (slot < 256 && (a[static_cast<std::size_t>(slot)] || b[static_cast<std::size_t>(slot)])) ++slot;
  return slot;
}

}  // namespace

// Most of a picture is uniform, so repeated groups are skipped; once a picture has used all slots the scan can stop.
void FindSlots(GifPixels& pixels) {
  constexpr std::size_t kBlock = 4096;
  std::array<std::array<bool, 256>, 3> seen{};  // by kind
  const auto any = [](const std::array<bool, 256>& of) { return std::find(of.begin(), of.end(), true) != of.end(); };
  const auto all = [](const std::array<bool, 256>& of) { return std::find(of.begin(), of.end(), false) == of.end(); };
  const std::uint8_t* symbol = pixels.symbols.data();
  const GifPixel* kind = pixels.kinds.data();
  const std::size_t count = pixels.symbols.size();
  std::uint64_t lastSymbols = 0, lastKinds = ~std::uint64_t{0};
  std::size_t i = 0, check = kBlock;
  for (; i + 8 <= count; i += 8) {
    if (i >= check) {
      check += kBlock;
      if (all(seen[0]) && all(seen[1]) && !std::memchr(kind + i, static_cast<int>(GifPixel::Wildcard), count - i)) {
        i = count;
        break;
      }
    }
    std::uint64_t symbols, kinds;
    std::memcpy(&symbols, symbol + i, 8);
    std::memcpy(&kinds, kind + i, 8);
    if (symbols == lastSymbols && kinds == lastKinds) continue;
    lastSymbols = symbols;
    lastKinds = kinds;
    for (std::size_t k = i; k < i + 8; ++k) seen[static_cast<std::size_t>(kind[k])][symbol[k]] = true;
  }
  for (; i < count; ++i) seen[static_cast<std::size_t>(kind[i])][symbol[i]] = true;
  pixels.must = seen[static_cast<std::size_t>(GifPixel::Colour)];
  pixels.may = seen[static_cast<std::size_t>(GifPixel::Free)];
  pixels.hasFree = any(pixels.may);
  pixels.hasWildcard = any(seen[static_cast<std::size_t>(GifPixel::Wildcard)]);
}

int UnusedSlot(const GifPixels& pixels) {
  const int slot = Gap(pixels.must, pixels.may);
  return slot > 255 ? -1 : slot;
}

int GifCodeSize(int largest) {
  int bits = 2;
  while (1 << bits <= largest) ++bits;
  return bits;
}

namespace {

constexpr std::size_t kSmall = 4096;           // pixels; a frame up to this size is compressed in every mode
constexpr std::size_t kFullDictionary = 3800;  // codes, about as many as fill it

int Largest(const std::array<bool, 256>& slots) {
  int largest = 255;
  while (largest > 0 && !slots[static_cast<std::size_t>(largest)]) --largest;
  return largest;
}

// The slot for the wildcard: one that no pixel has or, if that would make the codes longer, one that only free pixels
// have. -1: none is left, or none is needed.
int ChooseWildcard(const GifPixels& pixels) {
  if (!pixels.hasFree && !pixels.hasWildcard) return -1;
  const int unused = Gap(pixels.must, pixels.may), unneeded = Gap(pixels.must, pixels.must);
  const int largest = Largest(pixels.must);
  const bool longer = GifCodeSize(std::max(unused, largest)) > GifCodeSize(std::max(unneeded, largest));
  const int wildcard = longer ? unneeded : unused;
  return wildcard > 255 ? -1 : wildcard;
}

// `free`: 0 or 1.
GLYPHMOTION_CLONES void WriteWildcards(std::uint8_t* __restrict out, const std::uint8_t* __restrict symbols,
                                       const std::uint8_t* __restrict free, std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto mask = static_cast<std::uint8_t>(-free[i]);
    out[i] = static_cast<std::uint8_t>((symbols[i] & ~mask) | (wildcard & mask));
  }
}

GLYPHMOTION_CLONES void PutWildcards(std::uint8_t* __restrict symbols, const GifPixel* __restrict kinds,
                                     std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) symbols[i] = kinds[i] == GifPixel::Wildcard ? wildcard : symbols[i];
}

GLYPHMOTION_CLONES void FindFree(std::uint8_t* __restrict out, const GifPixel* __restrict kinds, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = kinds[i] == GifPixel::Free;
}

GLYPHMOTION_CLONES void FindOpen(std::uint8_t* __restrict out, const std::uint8_t* __restrict free,
                                 const std::uint8_t* __restrict symbols, std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(free[i] | (symbols[i] == wildcard));
}

GLYPHMOTION_CLONES int CountChanges(const std::uint8_t* symbols, std::size_t count) {
  int changes = 0;
  for (std::size_t i = 1; i < count; ++i) changes += symbols[i] != symbols[i - 1];
  return changes;
}

// Writes the wildcard into runs of free pixels that change colour at least `often` times, where the colours would cost
// more: along the edges of letters that do not move, for example. `open` also has the pixels that must be wildcards.
// Returns whether there is such a run.
template <int often>
bool WriteVaried(std::uint8_t* out, const std::uint8_t* symbols, const std::uint8_t* open, std::size_t count,
                 std::uint8_t wildcard) {
  std::memcpy(out, symbols, count);
  bool any = false;
  for (std::size_t i = 0; i < count;) {
    const void* start = std::memchr(open + i, 1, count - i);
    if (!start) break;
    i = static_cast<std::size_t>(static_cast<const std::uint8_t*>(start) - open);
    const void* after = std::memchr(open + i, 0, count - i);
    const std::size_t end = after ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(after) - open) : count;
    if (CountChanges(symbols + i, end - i) >= often) {
      std::fill(out + i, out + end, wildcard);
      any = true;
    }
    i = end;
  }
  return any;
}

}  // namespace

// What all attempts at a frame share.
struct GifFrameCompressor::Task {
  std::span<const std::uint8_t> symbols;  // colours, and the wildcard where it is required
  std::span<const std::uint8_t>
      reached;                         // the same, with the wildcard for free colours that the code size does not cover
  std::span<const std::uint8_t> free;  // 1 for free pixels of the latter; empty when nothing is free
  std::span<const std::uint8_t> open;  // the same, and 1 where the wildcard is required
  std::uint8_t wildcard = 0;
  int plainSize = 2, codeSize = 2;  // without and with the wildcard, where it is optional
  std::size_t growth = 0;           // bytes for a larger palette, when the wildcard makes it grow
};

struct GifFrameCompressor::Best {
  std::size_t cost = SIZE_MAX;  // bytes
  GifWay way;
  bool triedPlain = false;  // in one mode or another
};

// Compresses the frame and keeps the result if it is shorter than the best so far.
void GifFrameCompressor::Try(const Task& task, GifWay way, Best& best) {
  if (stop_ && *stop_ && best.cost != SIZE_MAX) return;
  const bool plain = way.strategy == GifStrategy::Plain, choice = way.strategy == GifStrategy::Choice;
  std::span<const std::uint8_t> pixels = plain ? task.symbols : task.reached;
  if (!plain && !choice) {
    written_.resize(pixels.size());
    if (way.strategy == GifStrategy::Wildcards) {
      WriteWildcards(written_.data(), pixels.data(), task.free.data(), pixels.size(), task.wildcard);
    } else {
      const auto write = way.strategy == GifStrategy::Varied ? WriteVaried<1> : WriteVaried<3>;
      const bool any = write(written_.data(), pixels.data(), task.open.data(), pixels.size(), task.wildcard);
      const bool asPlain = !any && task.reached.data() == task.symbols.data() && task.codeSize == task.plainSize;
      // Plain, if tried, was so against the same best attempt, unless that is Varied.
      if (asPlain && best.triedPlain && best.way.strategy != GifStrategy::Varied) return;
    }
    pixels = written_;
  }
  best.triedPlain |= plain;
  const std::size_t growth = plain ? 0 : task.growth;
  LzwRival rival;
  if (best.cost != SIZE_MAX) rival = {best.cost * 8, best_.marks};
  lzw_.Compress(pixels, choice ? task.free : std::span<const std::uint8_t>{}, task.wildcard,
                plain ? task.plainSize : task.codeSize, way.mode, rival, attempt_);
  const std::size_t cost = (attempt_.bits + 7) / 8 + growth;
  if (cost >= best.cost) return;
  std::swap(best_, attempt_);
  best.cost = cost;
  best.way = way;
}

// Writes the wildcard into `pixels` where it is required.
GifFrameCompressor::Task GifFrameCompressor::TaskOf(GifPixels& pixels, int wildcard, int paletteBits) {
  Task task;
  task.wildcard = static_cast<std::uint8_t>(std::max(wildcard, 0));
  if (pixels.hasWildcard)
    PutWildcards(pixels.symbols.data(), pixels.kinds.data(), pixels.symbols.size(), task.wildcard);
  task.symbols = task.reached = pixels.symbols;
  const int largest = Largest(pixels.must);
  task.plainSize = GifCodeSize(std::max({largest, Largest(pixels.may), pixels.hasWildcard ? wildcard : 0}));
  task.codeSize = GifCodeSize(std::max(largest, wildcard));
  // The cost of a larger palette is spread over several frames.
  if (wildcard >= 0 && wildcard >> paletteBits) task.growth = (std::size_t{3} << paletteBits) / 8;
  if (pixels.hasFree && wildcard >= 0) FindFreedom(pixels, task);
  return task;
}

// Colours that only free pixels have would need strings of their own, or even longer codes, so they become the
// wildcard. In large frames such strings pay off.
void GifFrameCompressor::FindFreedom(const GifPixels& pixels, Task& task) {
  constexpr std::size_t kLarge = 1u << 15;  // pixels
  const std::size_t count = pixels.symbols.size();
  free_.resize(count);
  FindFree(free_.data(), pixels.kinds.data(), count);
  std::array<bool, 256> dropped{};
  bool any = false;
  for (std::size_t slot = 0; slot < 256; ++slot) {
    dropped[slot] =
        pixels.may[slot] && (slot >> task.codeSize || slot == task.wildcard || (count <= kLarge && !pixels.must[slot]));
    any |= dropped[slot];
  }
  if (any) {
    reached_ = pixels.symbols;
    for (std::size_t i = 0; i < count; ++i) {
      const bool drop = free_[i] & dropped[reached_[i]];
      reached_[i] = drop ? task.wildcard : reached_[i];
      free_[i] ^= drop;
    }
    task.reached = reached_;
  }
  task.free = task.open = free_;
  if (!any && !pixels.hasWildcard) return;
  open_.resize(count);
  FindOpen(open_.data(), free_.data(), task.reached.data(), count, task.wildcard);
  task.open = open_;
}

// The fast strategies first, so that the slow one is abandoned early where it loses.
void GifFrameCompressor::TryAll(const Task& task, Best& best) {
  const bool small = effort_ > 5 && task.symbols.size() <= kSmall;
  const auto tryStrategies = [&](LzwMode mode) {
    if (task.free.empty()) return Try(task, {GifStrategy::Plain, mode}, best);
    constexpr GifStrategy kOrder[] = {GifStrategy::Wildcards, GifStrategy::Plain, GifStrategy::Varied,
                                      GifStrategy::Often, GifStrategy::Choice};
    constexpr std::size_t kTried[] = {1, 2, 4, 5};  // by effort
    for (const GifStrategy strategy : std::span(kOrder).first(kTried[std::min(effort_, 3)]))
      Try(task, {strategy, mode}, best);
  };
  if (!small) {
    tryStrategies({false, Lookahead::Never});
    if (effort_ > 3) Try(task, {best.way.strategy, {false, Lookahead::Always}}, best);
    if (effort_ > 4 && best_.count > kFullDictionary)
      Try(task, {best.way.strategy, {true, best.way.mode.lookahead}}, best);
  }
  if (small || effort_ > 6) tryStrategies({false, Lookahead::Always});
  if (small || effort_ > 7) tryStrategies({true, Lookahead::Always});
  if (effort_ > 8) tryStrategies({true, Lookahead::WhenFull});
}

GifStream GifFrameCompressor::Compress(GifPixels& pixels, int paletteBits, GifSearch& search) {
  const int wildcard = ChooseWildcard(pixels);
  const Task task = TaskOf(pixels, wildcard, paletteBits);
  Best best;
  if (search.likely.empty()) TryAll(task, best);
  for (const GifWay& way : search.likely)
    Try(task, {task.free.empty() ? GifStrategy::Plain : way.strategy, way.mode}, best);
  search.best = best.way;
  GifStream stream{
      best.way.strategy != GifStrategy::Plain || pixels.hasWildcard ? wildcard : -1, best_.minCodeSize, {}};
  PackLzw(best_, stream.bytes);
  return stream;
}

}  // namespace glyphmotion
