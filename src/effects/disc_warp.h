// SPDX-License-Identifier: MIT
// Warps of the disc (an ellipse, in an oblong picture) whose diameter is the picture's longer side; the twists and the
// bulge share them. Outside the disc the picture is unchanged; inside, the place where a pixel is sampled depends on
// its distance from the centre.
//
// The disc is its own mirror image at both axes, to the last bit: the centre lies at a half of the sides, so distances
// of mirrored pixels differ by their sign alone, and so does all that follows from them by products and sums. Work is
// done for the quarter right of and below the centre and used four times. Column i of the quarter is the
// picture's column firstX + i and, mirrored, width - firstX - i; the last column and row lie one place outside and have
// a mirrored place only.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "image/packed_dib.h"
#include "platform/heap.h"
#include "platform/run_state.h"

namespace glyphmotion {

/// The quarter of a picture's disc.
struct DiscQuarter {
  int width = 0, height = 0;  ///< of the picture, pixels
  double centreX = 0, centreY = 0, radius = 0;
  double aspectX = 1, aspectY = 1;  ///< what makes the ellipse round
  int firstX = 0, firstY = 0;       ///< the first column and row not left of or above the centre
  std::vector<double> dx, dy;       ///< by column and row: distance from the centre times the aspect, at least 0
  std::vector<std::size_t> start;   ///< by row, and one more: where its places begin in arrays of one value a place
  std::vector<double> distance;     ///< by place: from the centre, below the radius

  int Rows() const { return static_cast<int>(dy.size()); }
  std::size_t PlacesOf(int row) const {
    return start[static_cast<std::size_t>(row) + 1] - start[static_cast<std::size_t>(row)];
  }
};

DiscQuarter MakeDiscQuarter(int width, int height);

/// Calls work(begin, end) for pieces of a quarter's places; false, with the rest undone, once the run is to end. A
/// table that grows piece by piece is also cleared that way: clearing one of a large picture at once takes a tenth of a
/// second.
template <typename Work>
bool ForPlaces(std::size_t places, Work work) {
  constexpr std::size_t kPiece = 4096;
  for (std::size_t begin = 0; begin < places; begin += kPiece) {
    if (EndRequested()) return false;
    work(begin, std::min(begin + kPiece, places));
  }
  return true;
}
inline void ReservePlaces(std::vector<double>& table, std::size_t size) {
  if (table.capacity() >= size) return;
  table.reserve(size);
  PreferLargePages(table.data(), table.capacity() * sizeof(double));
}
inline void GrowTo(std::vector<double>& table, std::size_t size) {
  if (table.size() < size) table.resize(size);
}

/// The places of one row of a quarter; see DiscQuarter.
struct DiscRow {
  std::size_t places, start;  ///< how many, and where they begin in arrays of one value a place
  const double* dx;
  double dy, aspectX, aspectY;
};
inline DiscRow RowOf(const DiscQuarter& quarter, int row) {
  const auto at = static_cast<std::size_t>(row);
  return {quarter.PlacesOf(row), quarter.start[at], quarter.dx.data(),
          quarter.dy[at],        quarter.aspectX,   quarter.aspectY};
}

/// Where the places of one row of a quarter are sampled, as offsets from the centre in pixels, x and y. `below` is for
/// the pixels right of and below the centre and, negated, for those left and above; `above` for right and above and,
/// negated, left and below.
struct RowOffsets {
  explicit RowOffsets(std::size_t places) : belowX(places), belowY(places), aboveX(places), aboveY(places) {}
  std::vector<double> belowX, belowY, aboveX, aboveY;
};

/// Samples `from` for a quarter's row and its mirror images into `to`. Both are of the quarter's size and of the same
/// depth, 8 or 24 bits. A sample at (x, y) is the value between the four pixels around (x + 0.5, y + 0.5): the half
/// pixel is on top of what is a pixel's index already, so pictures drift by it to the upper left. Places outside count
/// as 0; each channel is weighted by itself; fractions are dropped.
void SampleMirrored(const DiscQuarter& quarter, int row, const RowOffsets& offsets, const DibView& from,
                    const DibView& to) noexcept;

/// Whether the depth can be warped: 8 or 24 bits.
inline bool CanWarp(const DibView& view) noexcept { return view && (view.Bits() == 8 || view.Bits() == 24); }

/// A cache of a few expensive things by size; the least recently used is evicted.
template <typename Entry, std::size_t count>
struct RecentSizes {
  Entry entries[count];
  /// The entry of this size; `make` fills a missing one.
  template <typename Make>
  Entry& Find(int width, int height, Make make) {
    for (std::size_t i = 0; i < count; ++i) {
      if (entries[i].quarter.width != width || entries[i].quarter.height != height) continue;
      for (; i > 0; --i) std::swap(entries[i], entries[i - 1]);
      return entries[0];
    }
    for (std::size_t i = count - 1; i > 0; --i) std::swap(entries[i], entries[i - 1]);
    entries[0] = make();
    return entries[0];
  }
};

}  // namespace glyphmotion
