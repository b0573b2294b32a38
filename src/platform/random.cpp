// SPDX-License-Identifier: MIT
#include "platform/random.h"

#include "platform/run_state.h"

namespace glyphmotion {

void SeedRandom(std::uint32_t seed) noexcept { CurrentRun().random = seed; }

int NextRandom() noexcept {
  std::uint32_t& state = CurrentRun().random;
  state = StateAfter(state);
  return RandomOf(state);
}

std::uint32_t RandomState() noexcept { return CurrentRun().random; }

}  // namespace glyphmotion
