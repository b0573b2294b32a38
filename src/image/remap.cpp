// SPDX-License-Identifier: MIT
#include "image/remap.h"

#include <algorithm>
#include <cstring>

#include "image/colour_cells.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kLightBrightness = 129;

using IndexTable = std::array<std::uint8_t, 256>;

std::uint8_t IsLight(Rgb c) { return Brightness(c) >= kLightBrightness; }

// The new image's index for each index of the source.
IndexTable TranslationOf(const DibView& source, ColourMatcher::State& state, int targetBits) {
  IndexTable table{};
  const int entries = 1 << source.Bits();
  for (int i = 0; i < entries; ++i) {
    auto& to = table[static_cast<std::size_t>(i)];
    const Rgb c = source.TableEntry(i);
    if (source.Bits() == 1) {
      const std::uint32_t level = i ? 255 : 0;
      to = targetBits == 1 ? static_cast<std::uint8_t>(i) : Match(state, level, level, level);
    } else if (targetBits == 1) {
      to = IsLight(c);
    } else {
      // Searches all entries that the depth has room for, beyond the matcher's own.
      to = static_cast<std::uint8_t>(NearestColour(c.red, c.green, c.blue, state.palette, 1 << state.depth));
    }
  }
  return table;
}

void TranslateRow(const DibView& source, int r, const IndexTable& table, std::uint8_t* indices) {
  const std::uint8_t* from = source.StoredRow(r);
  const int bits = source.Bits(), perByte = 8 / bits, mask = (1 << bits) - 1;
  for (int x = 0; x < source.Width(); ++x) {
    const int shift = 8 - bits - x % perByte * bits;
    indices[x] = table[static_cast<std::size_t>(from[x / perByte] >> shift & mask)];
  }
}

void LightRow(const std::uint8_t* from, int width, std::uint8_t* indices) {
  for (int x = 0; x < width; ++x, from += 3) indices[x] = IsLight({from[2], from[1], from[0]});
}

// Row r, whose indices are those of the picture before where it is the same.
const std::uint8_t* MatchRow(const std::uint8_t* from, int r, ColourMatcher::State& state) {
  const int width = state.rows.width;
  const auto bytes = 3 * static_cast<std::size_t>(width);
  std::uint8_t *const row = state.rows.Row(r), *const indices = row + bytes, &filled = indices[width];
  if (filled && std::memcmp(row, from, bytes) == 0) return indices;
  filled = 1;
  std::memcpy(row, from, bytes);
  for (int x = 0; x < width; ++x, from += 3) indices[x] = Match(state, from[2], from[1], from[0]);
  return indices;
}

}  // namespace

int NearestColour(int red, int green, int blue, const Palette& palette, int count) noexcept {
  int best = 0, least = 1000000;
  count = std::min(count, static_cast<int>(palette.size()));
  for (int i = 0; i < count; ++i) {
    const Rgb c = palette[static_cast<std::size_t>(i)];
    const int dr = c.red - red, dg = c.green - green, db = c.blue - blue;
    const int distance = 3 * dr * dr + 4 * dg * dg + 2 * db * db;  // 0 only for an exact match, so this finds it
    if (distance < least) {
      least = distance;
      best = i;
    }
  }
  return best;
}

void SortPaletteByBrightness(Palette& palette, int count) noexcept {
  // An insertion sort: stable, and without the buffer that std::stable_sort allocates.
  const auto n = static_cast<std::size_t>(std::clamp(count, 0, static_cast<int>(palette.size())));
  for (std::size_t i = 1; i < n; ++i) {
    const Rgb entry = palette[i];
    std::size_t to = i;
    for (; to > 0 && Brightness(entry) < Brightness(palette[to - 1]); --to) palette[to] = palette[to - 1];
    palette[to] = entry;
  }
}

ColourMatcher::ColourMatcher(const Palette& palette, int depth, int count, const RemapOptions& options)
    : state_(new State) {
  state_->palette = palette;
  state_->depth = depth;
  state_->count = std::clamp(count, 0, static_cast<int>(palette.size()));
  state_->options = options;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    state_->red[i] = palette[i].red;
    state_->green[i] = palette[i].green;
    state_->blue[i] = palette[i].blue;
  }
}

ColourMatcher::~ColourMatcher() { delete state_; }

PackedDib RemapImage(const PackedDib& image, ColourMatcher& matcher) noexcept {
  ColourMatcher::State& state = matcher.Internals();
  const DibView source(image);
  if (!source || source.Bits() == 32 || state.depth < 1 || state.depth > 8) return {};
  PackedDib remapped = BlankDib(source.Width(), source.Height(), &state.palette, state.depth);
  const DibView target(remapped);
  if (!target || !PrepareMatching(state)) return {};
  const int width = source.Width(), bits = target.Bits();
  const bool matched = source.Bits() == 24 && bits != 1;
  if (matched && !state.rows.Fit(width, source.Height())) return {};
  const MovableBlock line(matched ? BlockHandle{} : AllocateBlock(static_cast<std::size_t>(width)));
  const LockedBlock<std::uint8_t> indices(line.Handle());
  if (!matched && !indices) return {};
  const IndexTable table = source.Bits() < 9 ? TranslationOf(source, state, bits) : IndexTable{};
  for (int r = 0; r < source.Height(); ++r) {
    if (EndRequested()) return {};
    const std::uint8_t* from = source.StoredRow(r);
    if (matched) {
      PackIndices(target.StoredRow(r), MatchRow(from, r, state), width, bits);
      continue;
    }
    if (source.Bits() < 9) {
      TranslateRow(source, r, table, indices.get());
    } else {
      LightRow(from, width, indices.get());
    }
    PackIndices(target.StoredRow(r), indices.get(), width, bits);
  }
  return remapped;
}

PackedDib MaskReplace(const PackedDib& remapped, const PackedDib& source, Colour colour, int index) noexcept {
  const DibView from(remapped), picture(source);
  PackedDib replaced = BlankLike(from, from.Width(), from.Height());
  const DibView target(replaced);
  if (!from || !picture || !target) return {};
  const int width = from.Width(), height = from.Height();
  const bool plain = target.Bits() == 8 && picture.Bits() == 24 && picture.Width() >= width;
  const auto value = static_cast<std::uint32_t>(index);
  for (int y = 0; y < height; ++y) {
    if (EndRequested()) return {};
    std::memcpy(target.Row(y), from.Row(y), from.Stride());
    if (plain && y < picture.Height()) {
      const std::uint8_t* pixel = picture.Row(y);
      std::uint8_t* to = target.Row(y);
      for (int x = 0; x < width; ++x, pixel += 3) {
        const bool same = pixel[2] == RedOf(colour) && pixel[1] == GreenOf(colour) && pixel[0] == BlueOf(colour);
        to[x] = same ? static_cast<std::uint8_t>(value) : to[x];
      }
      continue;
    }
    for (int x = 0; x < width; ++x) {
      if (((picture.GetPixel(x, y) ^ colour) & 0xFFFFFF) == 0) target.SetPixel(x, y, value);
    }
  }
  return replaced;
}

}  // namespace glyphmotion
