// SPDX-License-Identifier: MIT
// Attempts are only counted, and given up once they are longer than the best; which of them are made is decided by what
// won for the frames before, and by how this one differs from them.
#include "host/gif_frame.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
int GifCodeSize(int largest) {
  int bits = 2;
  while (1 << bits <= largest) ++bits;
  return bits;
}

namespace {

constexpr std::size_t kSmall = 2048;              // pixels of a frame of which everything is tried
constexpr std::size_t kSmallAnimation = 700'000;  // the same for all frames together
constexpr std::size_t kMedium = 1u << 15;         // pixels up to which strings look ahead for little
constexpr std::size_t kWorthwhile = 64;           // share of the bytes that looking ahead must save in larger frames
constexpr std::size_t kClose = 32;  // share of the bytes by which a second way may be worse to stay in the race
constexpr int kLongestPeriod = 16;  // frames
constexpr std::size_t kFullDictionary = 3800;  // bytes, about what fills it

int Gap(const std::array<bool, 256>& a, const std::array<bool, 256>& b) {
  int slot = 0;
  while (slot < 256 && (a[static_cast<std::size_t>(slot)] || b[static_cast<std::size_t>(slot)])) ++slot;
  return slot;
}

int Largest(const std::array<bool, 256>& slots) {
  int largest = 255;
  while (largest > 0 && !slots[static_cast<std::size_t>(largest)]) --largest;
  return largest;
}

// The slot for the wildcard. One that no pixel has, or, where that would make the codes longer, one that only free
// pixels have. -1: none is left, or none is needed.
int ChooseWildcard(const GifPixels& pixels) {
  if (!pixels.hasFree && !pixels.hasWildcard) return -1;
  const int unused = Gap(pixels.must, pixels.may), unneeded = Gap(pixels.must, pixels.must);
  const int largest = Largest(pixels.must);
  const bool longer = GifCodeSize(std::max(unused, largest)) > GifCodeSize(std::max(unneeded, largest));
  const int wildcard = longer ? unneeded : unused;
  return wildcard > 255 ? -1 : wildcard;
}

GLYPHMOTION_CLONES void WriteWildcards(std::uint8_t* __restrict out, const std::uint8_t* __restrict symbols,
                                       const std::uint8_t* __restrict free, std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) out[i] = free[i] ? wildcard : symbols[i];
}

GLYPHMOTION_CLONES int CountChanges(const std::uint8_t* symbols, std::size_t count) {
  int changes = 0;
  for (std::size_t i = 1; i < count; ++i) changes += symbols[i] != symbols[i - 1];
  return changes;
}

// The runs of free pixels that change colour at least `often` times become wildcards: the edges of letters that stand
// still, for example. Their colours would cost more.
template <int often>
void WriteVaried(std::uint8_t* out, const std::uint8_t* symbols, const std::uint8_t* free, std::size_t count,
                 std::uint8_t wildcard) {
  std::memcpy(out, symbols, count);
  for (std::size_t i = 0; i < count;) {
    const void* start = std::memchr(free + i, 1, count - i);
    if (!start) break;
    i = static_cast<std::size_t>(static_cast<const std::uint8_t*>(start) - free);
    const void* after = std::memchr(free + i, 0, count - i);
    const std::size_t end = after ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(after) - free) : count;
    if (CountChanges(symbols + i, end - i) >= often) std::fill(out + i, out + end, wildcard);
    i = end;
  }
}

// Free pixels keep their colour only where a run of it goes on.
void WriteRuns(std::uint8_t* out, const std::uint8_t* symbols, const std::uint8_t* free, std::size_t count,
               std::uint8_t wildcard) {
  std::uint8_t last = wildcard;
  for (std::size_t i = 0; i < count; ++i) {
    if (!free[i] || symbols[i] != last) last = free[i] ? wildcard : symbols[i];
    out[i] = last;
  }
}

}  // namespace

// What the attempts at a frame have in common.
struct GifFrameCompressor::Task {
  std::span<const std::uint8_t> symbols;  // colours, and the wildcard where it must be
  std::span<const std::uint8_t> reached;  // the same, with the wildcard for free colours that the codes don't reach
  std::span<const std::uint8_t> freedom;  // of the latter; empty when nothing is free
  std::uint8_t wildcard = 0;
  int plainSize = 2, codeSize = 2;
  std::size_t growth = 0;  // bytes for a larger palette, when the wildcard makes it grow
  std::size_t freeCount = 0;
};

void GifFrameCompressor::Try(const Task& task, Method method, LzwMode mode, Result& result) {
  const bool plain = method == Method::Plain;
  std::span<const std::uint8_t> pixels = plain ? task.symbols : task.reached;
  if (method != Method::Plain && method != Method::Choice) {
    written_.resize(pixels.size());
    const auto write = method == Method::Varied  ? WriteVaried<1>
                       : method == Method::Often ? WriteVaried<3>
                       : method == Method::Runs  ? WriteRuns
                                                 : WriteWildcards;
    write(written_.data(), pixels.data(), task.freedom.data(), pixels.size(), task.wildcard);
    pixels = written_;
  }
  const std::size_t growth = plain ? 0 : task.growth;
  // Bits that cannot win any more, nor come close.
  const std::size_t limit = result.cost == SIZE_MAX ? SIZE_MAX : result.cost * 8 + result.cost * 8 / kClose;
  CompressLzw(pixels, method == Method::Choice ? task.freedom : std::span<const std::uint8_t>{}, task.wildcard,
              plain ? task.plainSize : task.codeSize, mode, limit, attempt_);
  const std::size_t cost = (attempt_.bits + 7) / 8 + growth;
  const bool wins = cost < result.cost;
  if (method != result.method) {
    const Method other = wins ? result.method : method;
    const std::size_t otherCost = wins ? result.cost : cost;
    if (otherCost < result.secondCost) result.second = other, result.secondCost = otherCost;
  }
  if (!wins) return;
  std::swap(best_, attempt_);
  result.cost = cost;
  result.method = method;
  result.mode = mode;
}

void GifFrameCompressor::TryMethods(const Task& task, bool lookahead, Result& result) {
  const LzwMode mode{lastMode_.clearWhenFull, lookahead};
  for (const Method method :
       {Method::Plain, Method::Choice, Method::Runs, Method::Varied, Method::Often, Method::Wildcards}) {
    if (method != Method::Plain && task.freedom.empty()) break;
    if (result.method != method || result.mode != mode || result.cost == SIZE_MAX) Try(task, method, mode, result);
  }
}

void GifFrameCompressor::TryModes(const Task& task, Result& result) {
  const LzwMode won = result.mode;
  if (task.symbols.size() < kSmall)
    TryMethods(task, !won.lookahead, result);
  else if (thorough_)
    Try(task, result.method, {won.clearWhenFull, !won.lookahead}, result);
  if (result.cost > kFullDictionary) Try(task, result.method, {!won.clearWhenFull, result.mode.lookahead}, result);
}

void GifFrameCompressor::Expect(std::size_t pixels) { thorough_ = pixels <= kSmallAnimation; }

// Whether the other ways are tried: the more seldom the longer one stands, or when much more or less of the frame is
// free.
bool GifFrameCompressor::IsTrial(const Task& task) {
  const std::size_t size = task.symbols.size();
  if (size < kSmall || thorough_) return true;
  const std::size_t now = task.freeCount * sizeOfTrial_, then = freeOfTrial_ * size;
  const bool another = (now > then ? now - then : then - now) * 5 > size * sizeOfTrial_;
  return countdown_-- <= 0 || (another && !task.freedom.empty());
}

int GifFrameCompressor::Compress(GifPixels& pixels, int paletteBits) {
  const int wildcard = ChooseWildcard(pixels);
  const std::size_t count = pixels.symbols.size();
  Task task;
  task.wildcard = static_cast<std::uint8_t>(std::max(wildcard, 0));
  if (pixels.hasWildcard)
    for (std::size_t i = 0; i < count; ++i)
      if (pixels.kinds[i] == GifPixel::Wildcard) pixels.symbols[i] = task.wildcard;
  task.symbols = task.reached = pixels.symbols;
  const int largest = Largest(pixels.must), largestFree = Largest(pixels.may);
  task.plainSize = GifCodeSize(std::max({largest, largestFree, pixels.hasWildcard ? wildcard : 0}));
  task.codeSize = GifCodeSize(std::max(largest, wildcard));
  const bool choice = pixels.hasFree && wildcard >= 0;
  if (choice) {
    freedom_.resize(count);
    for (std::size_t i = 0; i < count; ++i) freedom_[i] = pixels.kinds[i] == GifPixel::Free;
    task.freeCount = static_cast<std::size_t>(std::count(freedom_.begin(), freedom_.end(), 1));
    if (largestFree >> task.codeSize || pixels.may[task.wildcard]) {
      const int reach = 1 << task.codeSize;
      reached_ = pixels.symbols;
      for (std::size_t i = 0; i < count; ++i)
        if (freedom_[i] && (reached_[i] >= reach || reached_[i] == task.wildcard))
          reached_[i] = task.wildcard, freedom_[i] = 0;
      task.reached = reached_;
    }
    task.freedom = freedom_;
    // A palette that has to grow for the transparent index is paid back over some frames.
    if (wildcard >> paletteBits) task.growth = (std::size_t{3} << paletteBits) / 8;
  }

  const bool small = count < kSmall || thorough_, medium = count <= kMedium;
  Result result;
  result.mode = lastMode_;
  bool trial = IsTrial(task);
  if (!trial) {
    Try(task, choice ? lastMethod_ : Method::Plain, lastMode_, result);
    if (choice && secondIsClose_ && 2 * task.freeCount >= count) {
      Try(task, secondMethod_, lastMode_, result);
      if (result.method != lastMethod_) secondMethod_ = lastMethod_;
    }
    trial = result.cost > lastCost_ + lastCost_ / 4 + 64;
  }
  if (trial) {
    TryMethods(task, small, result);
    const std::size_t greedy = result.cost;
    secondMethod_ = result.second;
    secondIsClose_ = medium && result.secondCost <= greedy + greedy / kClose;
    if (!result.mode.lookahead) Try(task, result.method, {result.mode.clearWhenFull, true}, result);
    TryModes(task, result);
    if (!small) {
      const bool close =
          !medium && result.second == lastMethod_ && result.secondCost <= result.cost + result.cost / kWorthwhile;
      const bool stands =
          result.mode.clearWhenFull == lastMode_.clearWhenFull && (!choice || result.method == lastMethod_ || close);
      period_ = stands ? std::min(period_ * 2, kLongestPeriod) : std::max(period_ / 4, 1);
      // The first frame is no model for the others: they have one before them.
      countdown_ = lastCost_ == 0 ? 0 : period_ - 1;
      if (choice) freeOfTrial_ = task.freeCount, sizeOfTrial_ = count;
    }
    const bool worthwhile = medium || result.cost + result.cost / kWorthwhile <= greedy;
    lastMode_ = {result.mode.clearWhenFull, result.mode.lookahead && worthwhile};
  }
  lastCost_ = result.cost;
  if (choice) lastMethod_ = result.method;
  return result.method != Method::Plain || pixels.hasWildcard ? wildcard : -1;
}

}  // namespace glyphmotion
