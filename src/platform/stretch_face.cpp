// SPDX-License-Identifier: MIT
#include "platform/stretch_face.h"

#include <algorithm>
#include <array>

namespace glyphmotion {
namespace {

/// The part of each source pixel under one destination pixel, in units of 1/`source` of the destination pixel, so that
/// all sums are integers.
struct Share {
  int index;
  std::int64_t weight;
};

std::vector<std::vector<Share>> SharesOf(int source, int destination) {
  std::vector<std::vector<Share>> shares(static_cast<std::size_t>(destination));
  for (int i = 0; i < destination; ++i) {
    const std::int64_t from = std::int64_t{i} * source, to = from + source;
    for (std::int64_t s = from / destination; s * destination < to; ++s) {
      const std::int64_t weight = std::min(to, (s + 1) * destination) - std::max(from, s * destination);
      shares[static_cast<std::size_t>(i)].push_back({static_cast<int>(s), weight});
    }
  }
  return shares;
}

}  // namespace

void StretchFace(const DrawRequest& from, const DrawRequest& to) {
  if (from.width < 1 || from.height < 1 || to.width < 1 || to.height < 1) return;
  const auto columns = SharesOf(from.width, to.width), rows = SharesOf(from.height, to.height);
  const std::int64_t whole = std::int64_t{from.width} * from.height;
  for (int y = 0; y < to.height; ++y) {
    std::uint8_t* pixel = to.pixels + to.stride * y;
    for (int x = 0; x < to.width; ++x) {
      std::array<std::int64_t, 3> sum{};
      for (const Share& row : rows[static_cast<std::size_t>(y)]) {
        for (const Share& column : columns[static_cast<std::size_t>(x)]) {
          const std::uint8_t* p = from.pixels + from.stride * row.index + std::ptrdiff_t{3} * column.index;
          for (std::size_t c = 0; c < 3; ++c) sum[c] += row.weight * column.weight * p[c];
        }
      }
      for (const std::int64_t channel : sum) *pixel++ = static_cast<std::uint8_t>((channel + whole / 2) / whole);
    }
  }
}

}  // namespace glyphmotion
