// SPDX-License-Identifier: MIT
// The two-pass resampler: each axis in a pass of its own, through an intermediate bitmap of the source's depth. A pass
// first computes, for each output position, which source positions contribute and with what weights; the list is then
// used for every line. Both passes run on strips of parallel lines, interleaved in memory as floats (tap_sums.h): a
// vertical pass takes byte columns as they are, a horizontal one transposes the channels of some rows, tile by tile.
// Where a window covers only zeros the result is zero already.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "image/filters.h"
#include "image/resample_filters.h"
#include "image/resample_windows.h"
#include "image/tap_sums.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// Scales of whole numbers and of simple fractions give few different windows, which follow each other in turn. This
// many are compared.
constexpr std::size_t kRecent = 4;

// The last windows, by where they begin relative to their centre. That difference is exact, and the weights depend on
// nothing else.
struct RecentWindows {
  struct Window {
    double offset = 0;
    const Taps* taps = nullptr;
  };
  std::array<Window, kRecent> windows;
  std::size_t next = 0;

  const Taps* Find(double offset, int count) const {
    for (const Window& window : windows)
      if (window.taps && window.offset == offset && window.taps->count == count) return window.taps;
    return nullptr;
  }
  void Add(double offset, const Taps& taps) { windows[next++ % kRecent] = {offset, &taps}; }
};

// Fills in the weights of output position c; `exact` and `fast` have room for the window.
void WeighWindow(Contributions& list, int c, double scale, double filterScale, double radius,
                 const ResampleFilter& filter, RecentWindows& recent, double* exact, float* fast) {
  const double centre = (c + 0.5) / scale;
  const int first = static_cast<int>(std::max(0.0, std::trunc(centre - radius + 0.5)));
  const int end = static_cast<int>(std::min<double>(list.source, std::trunc(centre + radius + 0.5)));
  const int count = std::max(end - first, 0);
  list.first[static_cast<std::size_t>(c)] = count ? first : 0;
  Taps& taps = list.taps[static_cast<std::size_t>(c)];
  if (const Taps* same = recent.Find(first - centre, count)) {
    taps = *same;
    return;
  }
  double sum = 0.0;
  for (int t = 0; t < count; ++t) {
    exact[t] = filter.kernel((first + t - centre + 0.5) / filterScale);
    sum += exact[t];
  }
  for (int t = 0; t < count; ++t) {
    if (sum != 0.0 && sum != 1.0) exact[t] /= sum;
    fast[t] = static_cast<float>(exact[t]);
  }
  taps = {exact, count, fast, 0, RoundUpToGroup(count), 0.0f};
  taps.tolerance = Tolerance(taps);
  recent.Add(first - centre, taps);
}

}  // namespace

bool FindContributions(int source, int target, const ResampleFilter& filter, Contributions& list) noexcept {
  const double scale = std::max(static_cast<double>(target) / source, 0.0001);
  double filterScale = std::max(1.0, 1.0 / scale);
  double radius = filterScale * filter.support;
  if (radius <= 0.5) {
    filterScale = 1.0;
    radius = 0.500001;
  }
  const double widest = std::min(2.0 * radius + 2.0, static_cast<double>(source));
  const auto room = static_cast<std::size_t>(RoundUpToGroup(static_cast<int>(widest)));
  const auto outputs = static_cast<std::size_t>(target);
  list.source = source;
  list.target = target;
  list.first = ScratchArray<int>(outputs);
  list.taps = ScratchArray<Taps>(outputs);
  list.exact = ScratchArray<double>(outputs * room);
  list.fast = ScratchArray<float>(outputs * room);
  if (!list.first || !list.taps || !list.exact || !list.fast) return false;
  RecentWindows recent;
  for (int c = 0; c < target; ++c) {
    const std::size_t at = static_cast<std::size_t>(c) * room;
    WeighWindow(list, c, scale, filterScale, radius, filter, recent, list.exact.get() + at, list.fast.get() + at);
  }
  return true;
}

namespace {

// `pitch` interleaved lines, a multiple of kLanes: source position j of line l is samples[j * pitch + l].
struct Strip {
  std::ptrdiff_t pitch = 0;
  std::ptrdiff_t lines = 0;  // lines in use
  Scratch<float> samples;
  Scratch<int> filledBefore;  // the number of positions below j that are not all zero
};

bool MakeStrip(int length, int pitch, Strip& strip) {
  strip.pitch = strip.lines = pitch;
  strip.samples = ScratchArray<float>(static_cast<std::size_t>(length + kTapGroup) * static_cast<std::size_t>(pitch));
  strip.filledBefore = ScratchArray<int>(static_cast<std::size_t>(length) + 1);
  return strip.samples && strip.filledBefore;
}

// The outputs at position c of all lines; false when they are all zero.
bool SumWindow(const Strip& strip, const Contributions& list, int c, std::uint8_t* out) {
  const int first = list.first[static_cast<std::size_t>(c)];
  const Taps& taps = list.taps[static_cast<std::size_t>(c)];
  if (strip.filledBefore[static_cast<std::size_t>(first + taps.count)] ==
      strip.filledBefore[static_cast<std::size_t>(first)]) {
    return false;
  }
  for (std::ptrdiff_t line = 0; line < strip.lines; line += kLanes) {
    SumToBytes(strip.samples.get() + first * strip.pitch + line, strip.pitch, taps, kNoDivision, out + line);
  }
  return true;
}

std::ptrdiff_t BytesAcross(const DibView& view) {
  return static_cast<std::ptrdiff_t>(view.Width()) * (view.Bits() / 8);
}

// Columns per strip: reading short pieces of many rows is the slowest access pattern.
constexpr int kColumns = 4 * kLanes;

// Resamples columns of `from` into columns of `to`, which has the same width and is blank.
bool PassDown(const DibView& from, const DibView& to, const ResampleFilter& filter) {
  Contributions list;
  Strip strip;
  if (!FindContributions(from.Height(), to.Height(), filter, list) || !MakeStrip(from.Height(), kColumns, strip))
    return false;
  const std::ptrdiff_t across = BytesAcross(from);
  for (std::ptrdiff_t x = 0; x < across; x += kColumns) {
    if (EndRequested()) return false;
    const auto columns = static_cast<std::size_t>(std::min<std::ptrdiff_t>(kColumns, across - x));
    strip.lines = static_cast<std::ptrdiff_t>(columns);
    for (int y = 0; y < from.Height(); ++y) {
      const std::uint8_t* row = from.Row(y) + x;
      WidenBytes(row, columns, strip.samples.get() + y * strip.pitch);
      unsigned bits = 0;
      for (std::size_t l = 0; l < columns; ++l) bits |= row[l];
      strip.filledBefore[static_cast<std::size_t>(y) + 1] =
          strip.filledBefore[static_cast<std::size_t>(y)] + (bits != 0);
    }
    for (int c = 0; c < to.Height(); ++c) {
      std::uint8_t out[kColumns];
      if (SumWindow(strip, list, c, out)) std::memcpy(to.Row(c) + x, out, columns);
    }
  }
  return true;
}

constexpr int kTile = 32;  // positions transposed at a time, so that a tile fits the L1 cache

// Transposes rows top to top + rows - 1 of `from` into a strip.
template <int channels>
void TurnRowsIn(const DibView& from, int top, int rows, const Strip& strip) {
  for (int x0 = 0; x0 < from.Width(); x0 += kTile) {
    const int count = std::min(kTile, from.Width() - x0);
    unsigned bits[kTile] = {};
    for (int r = 0; r < rows; ++r) {
      const std::uint8_t* p = from.Row(top + r) + static_cast<std::ptrdiff_t>(x0) * channels;
      float* to = strip.samples.get() + static_cast<std::ptrdiff_t>(x0) * kLanes + r * channels;
      for (int i = 0; i < count; ++i, to += kLanes) {
        for (int k = 0; k < channels; ++k, ++p) {
          bits[i] |= *p;
          to[k] = static_cast<float>(*p);
        }
      }
    }
    int* filled = strip.filledBefore.get() + x0;
    for (int i = 0; i < count; ++i) filled[i + 1] = filled[i] + (bits[i] != 0);
  }
}

// Sums one tile of positions from c0 on and transposes it back into rows.
template <int channels>
void TurnTileOut(const Strip& strip, const Contributions& list, int c0, const DibView& to, int top, int rows) {
  const int count = std::min(kTile, to.Width() - c0);
  std::uint8_t tile[kTile][kLanes];
  bool filled = false;
  for (int i = 0; i < count; ++i) {
    if (SumWindow(strip, list, c0 + i, tile[i])) {
      filled = true;
    } else {
      std::memset(tile[i], 0, kLanes);
    }
  }
  if (!filled) return;
  for (int r = 0; r < rows; ++r) {
    std::uint8_t* out = to.Row(top + r) + static_cast<std::ptrdiff_t>(c0) * channels;
    for (int i = 0; i < count; ++i, out += channels) std::memcpy(out, tile[i] + r * channels, channels);
  }
}

// Resamples rows of `from` into rows of `to`, which has the same height and is blank.
template <int channels>
bool PassAcross(const DibView& from, const DibView& to, const ResampleFilter& filter) {
  Contributions list;
  Strip strip;
  if (!FindContributions(from.Width(), to.Width(), filter, list) || !MakeStrip(from.Width(), kLanes, strip))
    return false;
  constexpr int kRows = kLanes / channels;
  for (int top = 0; top < from.Height(); top += kRows) {
    if (EndRequested()) return false;
    const int rows = std::min(kRows, from.Height() - top);
    TurnRowsIn<channels>(from, top, rows, strip);
    for (int c0 = 0; c0 < to.Width(); c0 += kTile) TurnTileOut<channels>(strip, list, c0, to, top, rows);
  }
  return true;
}

bool Pass(bool down, const DibView& from, const DibView& to, const ResampleFilter& filter) {
  if (down) return PassDown(from, to, filter);
  switch (from.Bits()) {
    case 8:
      return PassAcross<1>(from, to, filter);
    case 24:
      return PassAcross<3>(from, to, filter);
    default:
      return PassAcross<4>(from, to, filter);
  }
}

}  // namespace

PackedDib ResampleToSize(const PackedDib& source, int width, int height) noexcept {
  const DibView from(source);
  if (!from) return {};
  if (width == from.Width() && height == from.Height()) return DuplicateDib(source);
  PackedDib result = BlankLike(from, width, height);
  if (from.Bits() < 8) return result;
  {
    const DibView to(result);
    if (!to) return {};
    const double growth = std::max(static_cast<double>(width) / from.Width(), 0.0001) *
                          std::max(static_cast<double>(height) / from.Height(), 0.0001);
    const ResampleFilter& filter = kResampleFilters[growth > 1.0 ? kMitchellFilter : kLanczosFilter];
    const bool downFirst = ResamplesDownFirst(from.Width(), from.Height(), width, height);
    const PackedDib between = downFirst ? BlankLike(from, from.Width(), height) : BlankLike(from, width, from.Height());
    const DibView middle(between);
    if (!middle || !Pass(downFirst, from, middle, filter) || !Pass(!downFirst, middle, to, filter)) return {};
  }
  return result;
}

PackedDib ResampleByPercent(const PackedDib& source, int xPercent, int yPercent) noexcept {
  int width = 0, height = 0;
  {
    const DibView view(source);
    if (!view) return {};
    const double x = static_cast<double>(view.Width()) * xPercent / 100.0 + 0.5;
    const double y = static_cast<double>(view.Height()) * yPercent / 100.0 + 0.5;
    constexpr double kLongest = 2147483647.0;
    if (!(x >= 1.0 && x <= kLongest && y >= 1.0 && y <= kLongest)) return {};
    width = static_cast<int>(x);
    height = static_cast<int>(y);
  }
  return ResampleToSize(source, width, height);
}

}  // namespace glyphmotion
