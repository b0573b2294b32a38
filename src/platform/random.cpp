// SPDX-License-Identifier: MIT
#include "platform/random.h"

namespace glyphmotion {
namespace {
std::uint32_t state = 1;
}  // namespace

void SeedRandom(std::uint32_t seed) noexcept { state = seed; }

int NextRandom() noexcept {
  state = NextState(state);
  return ValueOfState(state);
}

std::uint32_t RandomState() noexcept { return state; }

}  // namespace glyphmotion
