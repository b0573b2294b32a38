// SPDX-License-Identifier: MIT
#include "platform/random.h"

#include "platform/run_state.h"

namespace glyphmotion {

void SeedRandom(std::uint32_t seed) noexcept { CurrentRandom() = {seed, true}; }

int NextRandom() noexcept {
  std::uint32_t& state = CurrentRandom().state;
  state = StateAfter(state);
  return RandomOf(state);
}

std::uint32_t RandomState() noexcept { return CurrentRandom().state; }

}  // namespace glyphmotion
