// SPDX-License-Identifier: MIT
// Attempts are only counted, and given up once they are longer than the best; which of them are made is decided by what
// won for the frames before, and by how this one differs from them.
#include "host/encoders/gif_frame.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

// The lowest slot in neither, or 256.
int Gap(const std::array<bool, 256>& a, const std::array<bool, 256>& b) {
  int slot = 0;
  while (slot < 256 && (a[static_cast<std::size_t>(slot)] || b[static_cast<std::size_t>(slot)])) ++slot;
  return slot;
}

}  // namespace

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

constexpr std::size_t kSmall = 2048;                // pixels of a frame of which everything is tried
constexpr std::size_t kSmallAnimation = 200'000;    // the same for all frames together
constexpr std::size_t kMediumAnimation = 700'000;   // pixels up to which the ways are tried often
constexpr std::size_t kLargeAnimation = 1'200'000;  // pixels from which dear frames are tried whole, however small
constexpr std::size_t kMiddle = 12'000;             // pixels of a larger frame, or a quarter of it, for a race
constexpr std::size_t kMedium = 1u << 15;           // pixels up to which strings look ahead for little
constexpr std::size_t kShortRun = 2;                // pixels
constexpr std::size_t kMarkedly = 100;  // share of the bytes that a slower or another way must save in larger frames
constexpr std::size_t kClose = 32;      // share of the bytes by which a second way may be worse to stay in the race
constexpr int kLongestDearPeriod = 32;  // frames
constexpr int kNarrowPeriod = 4;        // frames after which a method runs again that was beaten by little
constexpr std::size_t kFullDictionary = 3800;  // bytes, about what fills it

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

// `free`: 0 or 1.
GLYPHMOTION_CLONES void WriteWildcards(std::uint8_t* __restrict out, const std::uint8_t* __restrict symbols,
                                       const std::uint8_t* __restrict free, std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto mask = static_cast<std::uint8_t>(-free[i]);
    out[i] = static_cast<std::uint8_t>((symbols[i] & ~mask) | (wildcard & mask));
  }
}

GLYPHMOTION_CLONES void FindFree(std::uint8_t* __restrict out, const GifPixel* __restrict kinds, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = kinds[i] == GifPixel::Free;
}

GLYPHMOTION_CLONES void FindOpen(std::uint8_t* __restrict out, const std::uint8_t* __restrict free,
                                 const std::uint8_t* __restrict symbols, std::size_t count, std::uint8_t wildcard) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(free[i] | (symbols[i] == wildcard));
}

GLYPHMOTION_CLONES std::uint32_t CountFree(const std::uint8_t* free, std::size_t count) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < count; ++i) sum += free[i];
  return sum;
}

GLYPHMOTION_CLONES std::uint32_t CountRuns(const std::uint8_t* free, std::size_t count) {
  std::uint32_t runs = free[0];
  for (std::size_t i = 1; i < count; ++i) runs += free[i] & ~free[i - 1];
  return runs;
}

GLYPHMOTION_CLONES int CountChanges(const std::uint8_t* symbols, std::size_t count) {
  int changes = 0;
  for (std::size_t i = 1; i < count; ++i) changes += symbols[i] != symbols[i - 1];
  return changes;
}

// The runs of pixels that may be wildcards and that change colour at least `often` times become wildcards: the edges of
// letters that stand still, for example. Their colours would cost more. `open`: also where a wildcard must be.
template <int often>
void WriteVaried(std::uint8_t* out, const std::uint8_t* symbols, const std::uint8_t* open, std::size_t count,
                 std::uint8_t wildcard) {
  std::memcpy(out, symbols, count);
  for (std::size_t i = 0; i < count;) {
    const void* start = std::memchr(open + i, 1, count - i);
    if (!start) break;
    i = static_cast<std::size_t>(static_cast<const std::uint8_t*>(start) - open);
    const void* after = std::memchr(open + i, 0, count - i);
    const std::size_t end = after ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(after) - open) : count;
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
  std::span<const std::uint8_t> open;     // the same, and where the wildcard must be
  std::uint8_t wildcard = 0;
  int plainSize = 2, codeSize = 2;
  std::size_t growth = 0;     // bytes for a larger palette, when the wildcard makes it grow
  std::size_t freeCount = 0;  // pixels
  bool noise = false;         // they are free here and there, by chance: there is little to win

  Task Middle(std::size_t count) const {
    Task part = *this;
    count = std::min(count, symbols.size());
    const std::size_t from = (symbols.size() - count) / 2;
    part.symbols = symbols.subspan(from, count);
    part.reached = reached.subspan(from, count);
    if (!freedom.empty()) part.freedom = freedom.subspan(from, count), part.open = open.subspan(from, count);
    return part;
  }
};

void GifFrameCompressor::Try(const Task& task, Method method, LzwMode mode, Result& result) {
  const std::uint64_t bit =
      std::uint64_t{1} << (static_cast<int>(method) * 6 + static_cast<int>(mode.lookahead) * 2 + mode.clearWhenFull);
  if (result.tried & bit) return;
  result.tried |= bit;
  const bool plain = method == Method::Plain;
  std::span<const std::uint8_t> pixels = plain ? task.symbols : task.reached;
  if (method != Method::Plain && method != Method::Choice) {
    written_.resize(pixels.size());
    const auto write = method == Method::Varied  ? WriteVaried<1>
                       : method == Method::Often ? WriteVaried<3>
                       : method == Method::Runs  ? WriteRuns
                                                 : WriteWildcards;
    const bool varied = method == Method::Varied || method == Method::Often;
    write(written_.data(), pixels.data(), (varied ? task.open : task.freedom).data(), pixels.size(), task.wildcard);
    pixels = written_;
  }
  const std::size_t growth = plain ? 0 : task.growth;
  // Bits that cannot win any more, nor come close.
  const std::size_t limit = result.cost == SIZE_MAX ? SIZE_MAX : result.cost * 8 + result.cost * 8 / kClose;
  lzw_.Compress(pixels, method == Method::Choice ? task.freedom : std::span<const std::uint8_t>{}, task.wildcard,
                plain ? task.plainSize : task.codeSize, mode,
                {limit, result.cost == SIZE_MAX ? std::span<const LzwCodes::Mark>{} : result.best->marks}, attempt_);
  const std::size_t cost = (attempt_.bits + 7) / 8 + growth;
  std::size_t& least = result.costs[static_cast<std::size_t>(method)];
  least = std::min(least, cost);
  if (cost >= result.cost) return;
  std::swap(*result.best, attempt_);
  result.cost = cost;
  result.method = method;
  result.mode = mode;
}

// The best method but one.
GifFrameCompressor::Method GifFrameCompressor::Result::Second() const {
  std::size_t second = method == Method::Plain ? 1 : 0;
  for (std::size_t i = 0; i < kMethods; ++i)
    if (i != static_cast<std::size_t>(method) && costs[i] < costs[second]) second = i;
  return static_cast<Method>(second);
}

void GifFrameCompressor::TryMethods(const Task& task, Lookahead lookahead, Result& result) {
  const LzwMode mode{lastMode_.clearWhenFull, lookahead};
  for (const Method method :
       {Method::Plain, Method::Choice, Method::Runs, Method::Varied, Method::Often, Method::Wildcards}) {
    if (method != Method::Plain && (task.freedom.empty() || task.noise)) break;
    Try(task, method, mode, result);
  }
}

// Whether the best method but one stays in the race: not in large frames.
bool GifFrameCompressor::SecondIsClose(const Task& task, const Result& result) {
  return task.symbols.size() <= kMedium && result.CostOf(result.Second()) <= result.cost + result.cost / kClose;
}

// Of a large frame the ways without looking ahead, then the modes of the best of them. Those that fall behind are given
// up on the way, so that this takes about two attempts.
void GifFrameCompressor::TryWhole(const Task& task, Result& result) {
  TryMethods(task, Lookahead::Never, result);
  const Method method = result.method, second = result.Second();
  Try(task, method, {lastMode_.clearWhenFull, Lookahead::WhenFull}, result);
  if (!task.freedom.empty()) Try(task, method, {lastMode_.clearWhenFull, Lookahead::Always}, result);
  if (SecondIsClose(task, result)) Try(task, second, {lastMode_.clearWhenFull, Lookahead::Always}, result);
  Try(task, result.method, {!lastMode_.clearWhenFull, result.mode.lookahead}, result);
}

// Of a small frame everything.
void GifFrameCompressor::TryAll(const Task& task, Result& result) {
  TryMethods(task, Lookahead::Always, result);
  if (task.symbols.size() < kSmall)
    TryMethods(task, Lookahead::Never, result);
  else
    Try(task, result.method, {result.mode.clearWhenFull, Lookahead::Never}, result);
  if (result.cost > kFullDictionary)
    Try(task, result.method, {!result.mode.clearWhenFull, result.mode.lookahead}, result);
}

// The method that frames like the one of the race get: the winner; in its place the one that is in use, or a quicker
// one, where the winner saves little.
GifFrameCompressor::Method GifFrameCompressor::Usual(const Result& race) const {
  const auto isClose = [&](Method one) { return race.CostOf(one) <= race.cost + race.cost / kMarkedly; };
  if (lastMethod_ != Method::Choice && isClose(lastMethod_)) return lastMethod_;
  return race.method == Method::Choice && isClose(race.Second()) ? race.Second() : race.method;
}

// The ways run against each other, in a large frame over its middle.
void GifFrameCompressor::Race(const Task& task, Result& result) {
  const std::size_t size = task.symbols.size();
  const bool large = size > kMedium, choice = !task.freedom.empty(), clear = lastMode_.clearWhenFull;
  Result race(part_);
  const Task middle = large ? task.Middle(std::max(kMiddle, size / 4)) : task;
  // What looked ahead before this race must not pass for the greedy way.
  if (result.mode.lookahead != Lookahead::Never) result.costs.fill(SIZE_MAX), result.tried = 0;
  TryMethods(middle, Lookahead::Never, large ? race : result);
  const bool tells = large && race.cost > 2 * kFullDictionary;  // a part from which the rest can be judged
  if (large && !tells) {
    const Method second = race.Second();
    // Looking for choices is slow; it has to win in the part.
    const bool isClose = second != Method::Choice && race.CostOf(second) <= race.cost + race.cost / kClose;
    Try(task, race.method, {clear, Lookahead::Never}, result);
    if (isClose) Try(task, second, {clear, Lookahead::Never}, result);
  }
  if (!tells) race = result;
  const Method method = large && choice ? Usual(race) : race.method;
  if (choice) lastMethod_ = method;
  narrow_ = race.method != method && race.method != Method::Choice;
  const Task& ground = tells ? middle : task;
  Result& judged = tells ? race : result;
  std::size_t least = judged.CostOf(method);
  const bool fullForLong = large && least > kFullDictionary * 3 / 2;
  lastMode_.lookahead = Lookahead::Never;
  for (const Lookahead ahead : {Lookahead::WhenFull, Lookahead::Always}) {
    // To try both is only cheap in a part.
    if (!tells && fullForLong != (ahead == Lookahead::WhenFull)) continue;
    Try(ground, method, {clear, ahead}, judged);
    const std::size_t cost = judged.CostOf(method);
    if (cost + (large ? least / kMarkedly : 0) < least) lastMode_.lookahead = ahead, least = cost;
  }
  if (clear || judged.cost > (large ? 2 : 1) * kFullDictionary) {
    Try(ground, method, {!clear, lastMode_.lookahead}, judged);
    lastMode_.clearWhenFull = judged.mode.clearWhenFull;
  }
  if (tells) Try(task, method, lastMode_, result);
  secondMethod_ = result.Second();
  secondIsClose_ = SecondIsClose(task, result);
}

void GifFrameCompressor::Expect(std::size_t pixels) {
  thorough_ = pixels <= kSmallAnimation;
  largeAnimation_ = pixels > kLargeAnimation;
  longestPeriod_ = pixels <= kMediumAnimation ? 4 : 16;
}

// Whether the other ways are tried: the more seldom the longer one stands, or when much more or less of the frame is
// free.
bool GifFrameCompressor::IsTrial(const Task& task) {
  const std::size_t size = task.symbols.size();
  if (size < kSmall || thorough_) return true;
  const std::size_t now = task.freeCount * sizeOfTrial_, then = freeOfTrial_ * size;
  const bool another = (now > then ? now - then : then - now) * 5 > size * sizeOfTrial_;
  return countdown_-- <= 0 || (another && !task.freedom.empty());
}

// Whether it pays to try the ways on the whole frame: no way to write free pixels suits a frame for long of which much
// is free and much is new, at a high price; and a dictionary that is filled again and again by a frame that is new all
// over.
bool GifFrameCompressor::IsDear(const Task& task, std::size_t cost) const {
  const std::size_t size = task.symbols.size();
  if (cost == SIZE_MAX || (!largeAnimation_ && size <= kMedium && !task.freedom.empty())) return false;
  return task.freedom.empty() ? cost > size / 5 && cost < size / 2
                              : cost > size / 8 && !task.noise && task.freeCount * 5 < size * 4;
}

// Whether a pixel costs a quarter more or less than when the other ways were tried last.
bool GifFrameCompressor::HasDrifted(std::size_t cost, std::size_t pixels) const {
  const std::size_t now = cost * sizeOfTrial_, then = costOfTrial_ * pixels;
  return now * 4 > then * 5 || now * 5 < then * 4;
}

// The slots that no free pixel keeps when there are wildcards: those that the codes don't reach, the wildcard's, and in
// frames that aren't large all that only free pixels have, which would need strings of their own.
std::array<bool, 256> GifFrameCompressor::GivenUp(const GifPixels& pixels, const Task& task) const {
  const bool large = pixels.symbols.size() > kMedium;
  std::array<bool, 256> given{};
  for (std::size_t slot = 0; slot < 256; ++slot)
    given[slot] =
        pixels.may[slot] && (slot >> task.codeSize || slot == task.wildcard || (!large && !pixels.must[slot]));
  return given;
}

// Writes the wildcard into `pixels` where it must be.
GifFrameCompressor::Task GifFrameCompressor::TaskOf(GifPixels& pixels, int wildcard, int paletteBits) {
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
  if (pixels.hasFree && wildcard >= 0) {
    freedom_.resize(count);
    FindFree(freedom_.data(), pixels.kinds.data(), count);
    task.freeCount = CountFree(freedom_.data(), count);
    task.noise =
        count >= kSmall && task.freeCount * 2 < count && task.freeCount < kShortRun * CountRuns(freedom_.data(), count);
    const std::array<bool, 256> given = GivenUp(pixels, task);
    if (std::find(given.begin(), given.end(), true) != given.end()) {
      reached_ = pixels.symbols;
      for (std::size_t i = 0; i < count; ++i)
        if (freedom_[i] && given[reached_[i]]) reached_[i] = task.wildcard, freedom_[i] = 0;
      task.reached = reached_;
    }
    task.freedom = task.open = freedom_;
    if (pixels.hasWildcard || task.reached.data() != task.symbols.data()) {
      open_.resize(count);
      FindOpen(open_.data(), freedom_.data(), task.reached.data(), count, task.wildcard);
      task.open = open_;
    }
    // A palette that has to grow for the transparent index is paid back over some frames.
    if (wildcard >> paletteBits) task.growth = (std::size_t{3} << paletteBits) / 8;
  }
  return task;
}

int GifFrameCompressor::Compress(GifPixels& pixels, int paletteBits) {
  const int wildcard = ChooseWildcard(pixels);
  const Task task = TaskOf(pixels, wildcard, paletteBits);
  const std::size_t count = task.symbols.size();
  const bool choice = !task.freedom.empty();
  const bool small = count < kSmall || thorough_;
  Result result(best_);
  result.mode = lastMode_;
  bool trial = IsTrial(task);
  if (!trial) {
    Try(task, choice ? lastMethod_ : Method::Plain, lastMode_, result);
    if (choice && secondIsClose_ && 2 * task.freeCount >= count) {
      Try(task, secondMethod_, lastMode_, result);
      if (result.method != lastMethod_) secondMethod_ = lastMethod_;
    }
    trial =
        result.cost > lastCost_ + lastCost_ / 4 + 64 || (choice && count > kMedium && HasDrifted(result.cost, count));
  }
  const bool mayBeDear = !small && dearCountdown_-- <= 0;
  bool dear = mayBeDear && IsDear(task, result.cost);
  if (trial && small) {
    TryAll(task, result), lastMode_ = result.mode;
  } else if (trial && !dear) {
    const Method method = lastMethod_;
    const bool clearWhenFull = lastMode_.clearWhenFull;
    Race(task, result);
    const bool stands = lastMode_.clearWhenFull == clearWhenFull && lastMethod_ == method;
    const int longest = lastMethod_ == Method::Choice ? longestPeriod_ / 4 : longestPeriod_;
    const int longer = count > kMedium ? std::min(period_ * 4, 32) : std::min(period_ * 2, longest);
    period_ = !stands ? std::max(period_ / 4, 1) : narrow_ ? std::min(longer, kNarrowPeriod) : longer;
    // The first frame is no model for the others: they have one before them.
    countdown_ = lastCost_ == 0 ? 0 : period_ - 1;
    dear = mayBeDear && IsDear(task, result.cost);
  }
  if (dear) {
    const std::size_t before = result.cost;
    TryWhole(task, result);
    // Where that saves little in frames that aren't large the next ones are left to the races.
    const bool pays = before - result.cost > before / kMarkedly || count > kMedium || !choice;
    dearPeriod_ = pays ? 1 : std::min(2 * dearPeriod_, kLongestDearPeriod);
    dearCountdown_ = dearPeriod_ - 1;
    if (choice) lastMode_ = result.mode;
    secondMethod_ = result.Second(), secondIsClose_ = SecondIsClose(task, result);
    if (lastCost_ != 0) countdown_ = 1;
  }
  if (choice && (dear || small || !trial)) lastMethod_ = result.method;
  if (choice && (dear || trial)) freeOfTrial_ = task.freeCount, sizeOfTrial_ = count, costOfTrial_ = result.cost;
  lastCost_ = result.cost;
  return result.method != Method::Plain || pixels.hasWildcard ? wildcard : -1;
}

}  // namespace glyphmotion
