// SPDX-License-Identifier: MIT
// The one random generator. Seeds are stored in documents, so its sequence is part of the file formats.
#pragma once

#include <cstdint>

namespace glyphmotion {

constexpr std::uint32_t NextState(std::uint32_t state) noexcept { return state * 214013u + 2531011u; }
/// The value that goes with a state, 0 to 32767.
constexpr int ValueOfState(std::uint32_t state) noexcept { return static_cast<int>((state >> 16) & 0x7FFF); }

/// Draws with one state. One state for the whole process, as
/// for the C runtime whose recurrence this is: an effect that seeds it continues the sequence in its later frames.
void SeedRandom(std::uint32_t seed) noexcept;
int NextRandom() noexcept;

/// The state, so that work that was remembered can leave the sequence where doing it again would have:
/// SeedRandom(RandomState()).
std::uint32_t RandomState() noexcept;

}  // namespace glyphmotion
