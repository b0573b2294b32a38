// SPDX-License-Identifier: MIT
// Weighted sums of bytes rounded to bytes: the inner loop that the blur and the resampler share. The exact definition
// of an output: the products of samples and double weights are added in double, in ascending order, the sum is clamped
// to 0..255, 0.5 is added, a divisor applied, the fraction dropped. That is slow, and nearly always more precise than a
// byte needs. So kLanes neighbouring outputs are summed in float first. The float sum is within a known tolerance of
// the exact one (see Tolerance), so the byte is certain unless the result is that close to a whole number; only then,
// for about one output in a thousand, is the exact sum computed. The bytes always equal those of the exact definition.
// Samples are stored as floats with whole values from 0 to 255, one vector of kLanes samples per tap, `pitch` floats
// apart. Rows under padded taps must be readable, with any finite values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace glyphmotion {

/// Outputs per step: at four bytes each they take 256 bytes, so a tap reads four cache lines.
constexpr int kLanes = 64;

/// Fast taps are processed in groups of four; lists are padded with zero weights.
constexpr int kTapGroup = 4;
constexpr int RoundUpToGroup(int taps) { return (taps + kTapGroup - 1) / kTapGroup * kTapGroup; }

/// One output's weights. The fast ones may omit taps at both ends that are too small to matter.
struct Taps {
  const double* exact = nullptr;  ///< `count` weights
  int count = 0;
  const float* fast = nullptr;  ///< `fastCount` weights, a multiple of kTapGroup; the first is that of tap `fastFirst`
  int fastFirst = 0;
  int fastCount = 0;
  float tolerance = 0.0f;  ///< from Tolerance()
};

/// The largest difference of a fast result from the exact one before a division, for samples of 0 to 255.
float Tolerance(const Taps& taps) noexcept;

/// kLanes divisors of the results, from 0.5 to 1, and their reciprocals in float. All ones if there is no division.
struct Divisors {
  const double* exact;
  const float* reciprocal;
};
extern const Divisors kNoDivision;

/// Writes kLanes bytes. `in` points to the samples of tap 0.
void SumToBytes(const float* in, std::ptrdiff_t pitch, const Taps& taps, const Divisors& divisors,
                std::uint8_t* out) noexcept;

/// The same, without division, for an output and the one that is its mirror image: the samples of the latter are these
/// in reverse order, and its weights too, but for the last bits.
void SumMirrored(const float* in, std::ptrdiff_t pitch, const Taps& taps, const Taps& mirroredTaps, std::uint8_t* out,
                 std::uint8_t* mirrored) noexcept;

/// Converts bytes to floats.
void WidenBytes(const std::uint8_t* from, std::size_t count, float* to) noexcept;

/// Vectors that straddle a cache line load at half speed.
constexpr std::align_val_t kScratchAlignment{64};

struct FreeScratch {
  void operator()(void* data) const noexcept { ::operator delete[](data, kScratchAlignment); }
};
template <typename T>
using Scratch = std::unique_ptr<T[], FreeScratch>;

/// A zeroed working array of trivial values, or null.
template <typename T>
Scratch<T> ScratchArray(std::size_t count) noexcept {
  return Scratch<T>(new (kScratchAlignment, std::nothrow) T[count]());
}

}  // namespace glyphmotion
