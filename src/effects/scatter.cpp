// SPDX-License-Identifier: MIT
#include "effects/scatter.h"

#include <cstring>
#include <utility>

#include "image/filters.h"
#include "platform/random.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// Brings the states of the first `draws` draws from `seed` into the tables and leaves the generator behind the last.
void DrawStates(ScatterTables& tables, std::uint32_t seed, std::size_t draws) {
  std::vector<std::uint32_t>& states = tables.states;
  if (tables.seed != seed) states.clear();
  tables.seed = seed;
  SeedRandom(states.empty() ? seed : states.back());
  states.reserve(draws);
  for (std::uint32_t state = RandomState(); states.size() < draws;) {
    if (states.size() % 4096 == 0 && EndRequested()) states.resize(draws);
    state = StateAfter(state);
    if (states.size() < draws) states.push_back(state);
  }
  SeedRandom(states[draws - 1]);
}

// value % divisor for values below 32768 and divisors below 128, without a division.
struct Remainder {
  explicit Remainder(int divisor) : by(static_cast<std::uint32_t>(divisor)), factor((1u << 22) / by + 1) {}
  int Of(std::uint32_t state) const {
    const auto value = static_cast<std::uint32_t>(RandomOf(state));
    const auto quotient = static_cast<std::uint32_t>((static_cast<std::uint64_t>(value) * factor) >> 22);
    return static_cast<int>(value - quotient * by);
  }
  std::uint32_t by, factor;
};

template <std::size_t bytes>
void ScatterInto(const DibView& from, const DibView& to, int radius, const std::uint32_t* states) {
  const int width = from.Width(), height = from.Height(), half = radius / 2;
  const Remainder remainder(radius);
  for (int y = 0; y < height; ++y) {
    if (EndRequested()) return;
    const std::uint8_t* own = from.Row(y);
    std::uint8_t* pixel = to.Row(y);
    for (int x = 0; x < width; ++x, own += bytes, pixel += bytes, states += 2) {
      const int fromX = x + remainder.Of(states[0]) - half, fromY = y + remainder.Of(states[1]) - half;
      const bool inside = static_cast<unsigned>(fromX) < static_cast<unsigned>(width) &&
                          static_cast<unsigned>(fromY) < static_cast<unsigned>(height);
      std::memcpy(pixel, inside ? from.Row(fromY) + static_cast<std::size_t>(fromX) * bytes : own, bytes);
    }
  }
}

}  // namespace

PackedDib Scatter(const PackedDib& source, int radius, std::uint32_t seed, ScatterTables& tables) {
  if (radius < 1) return DuplicateDib(source);
  PackedDib scattered;
  {
    const DibView from(source);
    if (!from || (from.Bits() != 8 && from.Bits() != 24)) return {};
    scattered = BlankLike(from, from.Width(), from.Height());
    const DibView to(scattered);
    if (!to) return {};
    DrawStates(tables, seed,
               std::size_t{2} * static_cast<std::size_t>(from.Width()) * static_cast<std::size_t>(from.Height()));
    if (from.Bits() == 8) {
      ScatterInto<1>(from, to, radius, tables.states.data());
    } else {
      ScatterInto<3>(from, to, radius, tables.states.data());
    }
  }
  PackedDib blurred = Blur(scattered, radius + 2);
  return blurred ? std::move(blurred) : std::move(scattered);
}

}  // namespace glyphmotion
