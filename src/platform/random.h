// SPDX-License-Identifier: MIT
// The random generator. Seeds are stored in documents, so its sequence is part of the file formats.
#pragma once

#include <cstdint>

namespace glyphmotion {

/// state = state * 214013 + 2531011; a value is (state >> 16) & 0x7FFF, 0 to 32767. A run has one state: an effect that
/// seeds it continues the sequence in later frames. A run starts from 1, like the C runtime that uses this recurrence.
constexpr std::uint32_t StateAfter(std::uint32_t state) noexcept { return state * 214013u + 2531011u; }
constexpr int RandomOf(std::uint32_t state) noexcept { return static_cast<int>((state >> 16) & 0x7FFF); }

void SeedRandom(std::uint32_t seed) noexcept;
int NextRandom() noexcept;

/// The state, so that cached work can leave the sequence where repeating it would have: SeedRandom(RandomState()).
std::uint32_t RandomState() noexcept;

}  // namespace glyphmotion
