// SPDX-License-Identifier: MIT
#include "image/colour_cells.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

// The weights of the three channels in a squared distance.
constexpr int kRedWeight = 3, kGreenWeight = 4, kBlueWeight = 2;

struct Cube {
  int red, green, blue;  // lowest values; the highest are 7 more
};

// The palette entries that may be nearest to a colour of one cube, as indices in ascending order.
struct Candidates {
  std::array<std::uint8_t, 256> index;
  int count = 0;
};

// The greatest excess, over an interval of values, of the squared distance to `a` over that to `b`. It is linear in the
// value, so it lies at an end of the interval.
constexpr int WorstExcess(int a, int b, int low) {
  const int value = a > b ? low : low + 7;
  return (a - b) * (a + b - 2 * value);
}

// An entry is skipped when the entry nearest to the cube's centre is at least as near to every colour of the cube (and
// comes first where they may be equally near).
GLYPHMOTION_CLONES Candidates CandidatesOf(const ColourMatcher::State& state, Cube cube) {
  std::array<std::int32_t, 256> worst;
  const int n = state.count;
  const int red = 2 * cube.red + 7, green = 2 * cube.green + 7, blue = 2 * cube.blue + 7;
  const std::int32_t *reds = state.red.data(), *greens = state.green.data(), *blues = state.blue.data();
  for (int i = 0; i < n; ++i) {
    const int dr = 2 * reds[i] - red, dg = 2 * greens[i] - green, db = 2 * blues[i] - blue;
    worst[static_cast<std::size_t>(i)] = kRedWeight * dr * dr + kGreenWeight * dg * dg + kBlueWeight * db * db;
  }
  const auto best = static_cast<int>(std::min_element(worst.begin(), worst.begin() + n) - worst.begin());
  const int bestRed = reds[best], bestGreen = greens[best], bestBlue = blues[best];
  for (int i = 0; i < n; ++i) {
    worst[static_cast<std::size_t>(i)] = kRedWeight * WorstExcess(bestRed, reds[i], cube.red) +
                                         kGreenWeight * WorstExcess(bestGreen, greens[i], cube.green) +
                                         kBlueWeight * WorstExcess(bestBlue, blues[i], cube.blue);
  }
  Candidates found;
  for (int i = 0; i < n; ++i) {
    found.index[static_cast<std::size_t>(found.count)] = static_cast<std::uint8_t>(i);
    found.count += worst[static_cast<std::size_t>(i)] >= (i <= best ? 0 : 1);
  }
  return found;
}

// Distance and index packed in one number, so that the minimum is the nearest entry with the lowest index; distances
// are below 2^20.
constexpr int Key(int weight, int entry, int value) { return weight * (entry - value) * (entry - value) * 256; }

GLYPHMOTION_CLONES void FillNearest(const ColourMatcher::State& state, Cube cube, std::uint8_t* indices) {
  const Candidates candidates = CandidatesOf(state, cube);
  if (candidates.count < 2) {
    std::memset(indices, candidates.count ? candidates.index[0] : 0, kCubeColours);
    return;
  }
  std::array<std::int32_t, kCubeColours> least;
  least.fill(INT32_MAX);
  for (int i = 0; i < candidates.count; ++i) {
    const std::size_t entry = candidates.index[static_cast<std::size_t>(i)];
    std::int32_t blue[8];
    for (int b = 0; b < 8; ++b) {
      blue[b] = Key(kBlueWeight, state.blue[entry], cube.blue + b) + static_cast<std::int32_t>(entry);
    }
    std::int32_t* out = least.data();
    for (int r = 0; r < 8; ++r) {
      const std::int32_t red = Key(kRedWeight, state.red[entry], cube.red + r);
      for (int g = 0; g < 8; ++g, out += 8) {
        const std::int32_t both = red + Key(kGreenWeight, state.green[entry], cube.green + g);
        for (int b = 0; b < 8; ++b) out[b] = std::min(out[b], both + blue[b]);
      }
    }
  }
  for (std::size_t i = 0; i < kCubeColours; ++i) indices[i] = static_cast<std::uint8_t>(least[i]);
}

// All colours of the cube use the match of its lowest corner, except the palette's own colours.
void FillFast(const ColourMatcher::State& state, Cube cube, std::uint8_t* indices) {
  const int corner = NearestColour(cube.red, cube.green, cube.blue, state.palette, state.count);
  std::memset(indices, corner, kCubeColours);
  for (int i = state.count - 1; i >= 0; --i) {
    const Rgb c = state.palette[static_cast<std::size_t>(i)];
    if (c.red >> 3 == cube.red >> 3 && c.green >> 3 == cube.green >> 3 && c.blue >> 3 == cube.blue >> 3) {
      indices[(c.red & 7) << 6 | (c.green & 7) << 3 | (c.blue & 7)] = static_cast<std::uint8_t>(i);
    }
  }
}

}  // namespace

bool MatchedRows::Fit(int newWidth, int newHeight) noexcept {
  if (bytes && width == newWidth && height == newHeight) return true;
  width = newWidth;
  height = newHeight;
  block.Reset(AllocateBlock(static_cast<std::size_t>(height) * RowBytes()));
  bytes = static_cast<std::uint8_t*>(LockBlock(block.Handle()));
  return bytes != nullptr;
}

bool PrepareMatching(ColourMatcher::State& state) noexcept {
  if (state.table) return true;
  state.block.Reset(AllocateUnsetBlock(std::size_t{kCubeCount} * kCubeColours));
  state.table = static_cast<std::uint8_t*>(LockBlock(state.block.Handle()));
  return state.table != nullptr;
}

void FillCube(ColourMatcher::State& state, std::uint32_t cube) noexcept {
  const Cube place = {static_cast<int>(cube >> 10) * 8, static_cast<int>(cube >> 5 & 31) * 8,
                      static_cast<int>(cube & 31) * 8};
  std::uint8_t* indices = state.table + std::size_t{cube} * kCubeColours;
  if (state.options.fastRemap) {
    FillFast(state, place, indices);
  } else if (state.count > 0) {
    FillNearest(state, place, indices);
  } else {
    std::memset(indices, 0, kCubeColours);
  }
  state.known[cube] = true;
}

void PackIndices(std::uint8_t* row, const std::uint8_t* indices, int width, int bits) noexcept {
  if (bits == 8) {
    std::memcpy(row, indices, static_cast<std::size_t>(width));
    return;
  }
  const int perByte = 8 / bits, mask = (1 << bits) - 1;
  for (int x = 0; x < width; x += perByte, ++row) {
    int byte = 0;
    for (int i = 0; i < perByte; ++i) byte = byte << bits | (x + i < width ? indices[x + i] & mask : 0);
    *row = static_cast<std::uint8_t>(byte);
  }
}

}  // namespace glyphmotion
