// SPDX-License-Identifier: MIT
#include "platform/random.h"

namespace glyphmotion {
namespace {
std::uint32_t state = 1;
}  // namespace

void SeedRandom(std::uint32_t seed) noexcept { state = seed; }

int NextRandom() noexcept {
  state = state * 214013u + 2531011u;
  return static_cast<int>((state >> 16) & 0x7FFF);
}

std::uint32_t RandomState() noexcept { return state; }

}  // namespace glyphmotion
