// SPDX-License-Identifier: MIT
// Floyd-Steinberg error diffusion, always from left to right, in storage order. A pixel needs the errors of its left
// neighbour and of three pixels of the previous row, so a single row is one long chain of dependent look-ups. Four rows
// are therefore diffused together, each two pixels behind the previous one: their chains are independent, and the
// values are the same as row by row.
// A stable dither keeps the indices of pixels that have not changed since the frame before. They take errors but give
// none, so the errors begin and end with each changed region.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "image/colour_cells.h"
#include "image/remap.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// ---- Colour ----

constexpr int kRowsTogether = 4;
constexpr int kLag = 2;

// The three channels are processed together, each in a lane of 13 bits of one number: red lowest, then green, blue. An
// error, -255 to 255, is stored with a bias of 256; its products with 7, 3, 5 and 1, divided by 16 and rounded down,
// then have biases of 112, 48, 80 and 16, and a pixel plus all received errors has 256 again. Lanes are never negative
// and never overflow into the next.
using Lanes = std::uint64_t;

constexpr Lanes Spread(Lanes value) { return value | value << 13 | value << 26; }

template <int kWeight>
constexpr Lanes Share(Lanes error) {
  return (error * kWeight >> 4) & Spread(511);
}

constexpr Lanes kNoError = Spread(256);
constexpr Lanes kNothingAbove = Share<3>(kNoError) + Share<5>(kNoError) + Share<1>(kNoError);

// For a channel's lane: the value within 0 to 255 in its lane, and the channel's part of the colour's index into the
// matcher's table from bit 40 on.
constexpr auto kLimited = [] {
  std::array<std::array<Lanes, 1024>, 3> limited{};
  for (std::size_t k = 0; k < 3; ++k) {
    for (std::size_t i = 0; i < 1024; ++i) {
      const std::size_t value = i < 256 ? 0 : std::min<std::size_t>(i - 256, 255);
      limited[k][i] = Lanes{value} << 13 * k | Lanes{kPlaces[k][value]} << 40;
    }
  }
  return limited;
}();

/// What the current rows share.
struct Job {
  ColourMatcher::State* state;
  const Lanes* entries;  ///< the palette, minus 256 in each lane
  const bool* known;     ///< belongs to the state, like the table
  const std::uint8_t* table;
};

/// One of the current rows.
struct Line {
  const std::uint8_t* pixels = nullptr;  ///< blue, green, red
  const std::uint8_t* kept = nullptr;    ///< 1 where `indices` is given
  std::uint8_t* indices = nullptr;
  const Lanes* above = nullptr;          ///< errors from the previous row
  Lanes* below = nullptr;                ///< errors for the next row
  Lanes carried = Share<7>(kNoError);    ///< 7/16 of the last pixel's error
  Lanes sixteenth = Share<1>(kNoError);  ///< 1/16 of it
  Lanes pending = 0;                     ///< errors so far for the position below the last pixel
};

// Processes pixel x of a line, which completes the position below its left neighbour; the first column gets nothing
// from the right.
template <bool kInside, bool kKeeps>
inline void Step(Line& line, int x, const Job& job) {
  Lanes error = kNoError;
  if (!kKeeps || !line.kept[x]) {
    const std::uint8_t* pixel = line.pixels + 3 * x;
    const Lanes sum = (pixel[2] | Lanes{pixel[1]} << 13 | Lanes{pixel[0]} << 26) + line.above[x] + line.carried;
    const Lanes limited = kLimited[0][sum & 1023] + kLimited[1][sum >> 13 & 1023] + kLimited[2][sum >> 26 & 1023];
    const auto place = static_cast<std::uint32_t>(limited >> 40);
    if (!job.known[place / kCubeColours]) [[unlikely]]
      FillCube(*job.state, place / kCubeColours);
    const std::uint8_t index = job.table[place];
    line.indices[x] = index;
    error = limited - job.entries[index];
  }
  if (kInside || x > 0) line.below[x - 1] = line.pending + Share<3>(kInside || x >= 2 ? error : kNoError);
  line.carried = Share<7>(error);
  line.pending = line.sixteenth + Share<5>(error);
  line.sixteenth = Share<1>(error);
}

template <int kRows, bool kKeeps>
void DiffuseRows(const Line* rows, int width, const Job job) {
  Line lines[kRows];
  for (int i = 0; i < kRows; ++i) lines[i] = rows[i];
  // Steps in which some line is at its first or last pixels, or outside the picture.
  const auto edge = [&](int from, int to) {
    for (int t = from; t < to; ++t) {
      for (int i = 0; i < kRows; ++i) {
        const int x = t - kLag * i;
        if (x < 0 || x >= width) continue;
        Step<false, kKeeps>(lines[i], x, job);
        if (x + 1 < width) continue;
        lines[i].below[x] = lines[i].pending + Share<3>(kNoError);
      }
    }
  };
  constexpr int kFirstInside = kLag * kRows;
  edge(0, kFirstInside);
  int t = kFirstInside;
  for (; t < width - 1; ++t) {
    for (int i = 0; i < kRows; ++i) Step<true, kKeeps>(lines[i], t - kLag * i, job);
  }
  edge(t, width + kLag * (kRows - 1));
}

// Expands an indexed row to blue, green, red, as in a 24-bit row.
void ExpandRow(const DibView& source, int r, std::uint8_t* to) {
  for (int x = 0; x < source.Width(); ++x, to += 3) {
    const Rgb c = source.TableEntry(static_cast<int>(source.GetPixel(x, source.Height() - 1 - r)));
    to[0] = c.blue;
    to[1] = c.green;
    to[2] = c.red;
  }
}

/// The lines' memory, in one block: errors for each current row and the next one, indices, expanded pixels.
struct LineMemory {
  MovableBlock block;
  LockedBlock<std::uint8_t> lock;
  std::size_t width;

  static constexpr std::size_t kBytes = 5;  // of a pixel: index, kept, blue, green, red

  explicit LineMemory(int pixels)
      : block(AllocateBlock(static_cast<std::size_t>(pixels) *
                            ((kRowsTogether + 1) * sizeof(Lanes) + kRowsTogether * kBytes))),
        lock(block.Handle()),
        width(static_cast<std::size_t>(pixels)) {}
  Lanes* ErrorsOf(int i) const { return reinterpret_cast<Lanes*>(lock.get()) + static_cast<std::size_t>(i) * width; }
  std::uint8_t* Bytes(int i) const {
    return reinterpret_cast<std::uint8_t*>(ErrorsOf(kRowsTogether + 1)) + static_cast<std::size_t>(i) * kBytes * width;
  }
};

/// The frame before, where there is one that a stable dither can build on.
struct Before {
  const DibView& source;
  const DibView& remapped;
};

// Finds the pixels of a row that have not changed, and gives them their indices.
void KeepIndices(const Before& before, const std::uint8_t* pixels, int r, std::uint8_t* indices, std::uint8_t* kept) {
  const std::uint8_t *was = before.source.StoredRow(r), *row = before.remapped.StoredRow(r);
  const bool whole = before.remapped.Bits() == 8;
  for (int x = 0; x < before.source.Width(); ++x) {
    kept[x] = std::memcmp(pixels + 3 * x, was + 3 * x, 3) == 0;
    indices[x] = whole ? row[x] : static_cast<std::uint8_t>(row[x / 2] >> (x % 2 ? 0 : 4) & 15);
  }
}

template <bool kKeeps>
PackedDib DitherColour(const DibView& source, ColourMatcher::State& state, const Before* before) {
  const int width = source.Width(), height = source.Height();
  PackedDib dithered = BlankDib(width, height, &state.palette, state.depth);
  const DibView target(dithered);
  const LineMemory memory(width);
  if (!target || !memory.lock || !PrepareMatching(state)) return {};
  std::array<Lanes, 256> entries;
  for (std::size_t i = 0; i < state.palette.size(); ++i) {
    const Rgb c = state.palette[i];
    entries[i] = (c.red | Lanes{c.green} << 13 | Lanes{c.blue} << 26) - kNoError;
  }
  const Job job = {&state, entries.data(), state.known.data(), state.table};
  std::fill_n(memory.ErrorsOf(0), width, kNothingAbove);
  for (int r = 0, rows = 0; r < height; r += rows) {
    if (EndRequested()) return {};
    rows = r + kRowsTogether <= height ? kRowsTogether : 1;
    Line lines[kRowsTogether];
    for (int i = 0; i < rows; ++i) {
      std::uint8_t* bytes = memory.Bytes(i);
      lines[i].pixels = source.StoredRow(r + i);
      lines[i].indices = bytes;
      lines[i].kept = bytes + width;
      lines[i].above = memory.ErrorsOf(i);
      lines[i].below = memory.ErrorsOf(i + 1);
      if (kKeeps) KeepIndices(*before, lines[i].pixels, r + i, bytes, bytes + width);
      if (source.Bits() == 24) continue;
      ExpandRow(source, r + i, bytes + 2 * width);
      lines[i].pixels = bytes + 2 * width;
    }
    if (rows == 1) {
      DiffuseRows<1, kKeeps>(lines, width, job);
    } else {
      DiffuseRows<kRowsTogether, kKeeps>(lines, width, job);
    }
    std::copy_n(memory.ErrorsOf(rows), width, memory.ErrorsOf(0));
    for (int i = 0; i < rows; ++i) PackIndices(target.StoredRow(r + i), lines[i].indices, width, target.Bits());
  }
  return dithered;
}

// ---- One bit ----

using ToneTable = std::array<int, 256>;

ToneTable TonesOf(const RemapOptions& options) {
  ToneTable tones;
  const double contrast = options.ditherContrast;
  const double step = 256 / (256 - 2 * contrast);
  double tone = options.ditherBrightness - contrast;
  for (int& entry : tones) {
    entry = tone > 254 ? 254 : tone < 1 ? 1 : static_cast<int>(tone);
    tone += step;
  }
  return tones;
}

struct Range {
  int low = 255, high = 0;
};

Range ReadBrightness(const DibView& source, std::uint8_t* work, std::size_t stride) {
  Range range;
  for (int r = 0; r < source.Height() && !EndRequested(); ++r) {
    std::uint8_t* row = work + stride * static_cast<std::size_t>(r);
    const std::uint8_t* from = source.StoredRow(r);
    for (int x = 0; x < source.Width(); ++x) {
      const Rgb c = source.Bits() == 24
                        ? Rgb{from[3 * x + 2], from[3 * x + 1], from[3 * x]}
                        : source.TableEntry(static_cast<int>(source.GetPixel(x, source.Height() - 1 - r)));
      const int level = Brightness(c);
      row[x] = static_cast<std::uint8_t>(level);
      range = {std::min(range.low, level), std::max(range.high, level)};
    }
  }
  return range;
}

void Add(std::uint8_t& level, int error) { level = static_cast<std::uint8_t>(std::clamp(level + error, 0, 255)); }

PackedDib DitherGrey(const DibView& source, ColourMatcher::State& state) {
  const int width = source.Width(), height = source.Height();
  PackedDib dithered = BlankDib(width, height, &state.palette, 1);
  const DibView target(dithered);
  // Padding before the first row, since the first column also writes to the byte before a row: the last byte of the
  // current row, which is a pixel of it when the width is a multiple of four.
  constexpr std::size_t kPad = 4;
  const std::size_t stride = DibStride(width, 8);
  const MovableBlock block(AllocateBlock(kPad + stride * static_cast<std::size_t>(height)));
  const LockedBlock<std::uint8_t> lock(block.Handle());
  if (!target || !lock) return {};
  std::uint8_t* work = lock.get() + kPad;
  const Range range = ReadBrightness(source, work, stride);
  const ToneTable tones = TonesOf(state.options);
  const int threshold = (range.low + range.high) >> 1;
  for (int r = 0; r < height; ++r) {
    if (EndRequested()) return {};
    std::uint8_t* row = work + stride * static_cast<std::size_t>(r);
    std::uint8_t* next = r + 1 < height ? row + stride : nullptr;
    std::uint8_t* bits = target.StoredRow(r);
    for (int x = 0; x < width; ++x) {
      const int tone = tones[row[x]];
      const bool light = tone > threshold;
      if (light) bits[x >> 3] = static_cast<std::uint8_t>(bits[x >> 3] | 0x80 >> (x & 7));
      const int error = (tone - (light ? range.high : range.low)) >> 4;
      const bool right = x + 1 < width;
      if (next) {
        if (right) Add(next[x + 1], error);
        if (x != 1) Add(next[x - 1], 3 * error);
        Add(next[x], 5 * error);
      }
      if (right) Add(row[x + 1], 7 * error);
    }
  }
  return dithered;
}

}  // namespace

PackedDib DitherImage(const PackedDib& image, ColourMatcher& matcher) noexcept {
  ColourMatcher::State& state = matcher.Internals();
  const DibView source(image);
  if (!source || source.Bits() == 1 || source.Bits() == 32 || state.depth < 1 || state.depth > 8) return {};
  return state.depth == 1 ? DitherGrey(source, state) : DitherColour<false>(source, state, nullptr);
}

PackedDib DitherStable(const PackedDib& image, const PackedDib& before, const PackedDib& beforeRemapped,
                       ColourMatcher& matcher) noexcept {
  ColourMatcher::State& state = matcher.Internals();
  const DibView source(image), was(before), remapped(beforeRemapped);
  const auto fits = [&](const DibView& view, int bits) {
    return view && view.Width() == source.Width() && view.Height() == source.Height() && view.Bits() == bits;
  };
  const bool known =
      state.depth > 1 && source && source.Bits() == 24 && fits(was, 24) && fits(remapped, state.depth > 4 ? 8 : 4);
  if (!known) return DitherImage(image, matcher);
  const Before last = {was, remapped};
  return DitherColour<true>(source, state, &last);
}

}  // namespace glyphmotion
