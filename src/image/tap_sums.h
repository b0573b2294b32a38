// SPDX-License-Identifier: MIT
// Weighted sums of bytes rounded to bytes: the inner loop that the blur and the resampler share.
//
// What an output is, is plain: the products of samples and double weights are added in double, in ascending order, the
// sum is held to 0..255, 0.5 is added, a divisor applied, the fraction dropped. Doing just that is slow, and nearly
// always more than a byte needs. So kLanes neighbouring outputs are summed in float first. The float sum is known to
// lie within a tolerance of the true one (see Tolerance), so that the byte is certain unless the result stands that
// close to a whole number; only then, for about one output in a thousand, the plain sum is done. The bytes are those of
// the plain reading, always.
//
// Samples stand in memory as floats that hold whole numbers from 0 to 255, one vector of kLanes samples a tap, `pitch`
// floats from one tap to the next. Rows that only a padded tap meets must be readable, with any finite values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace glyphmotion {

/// Outputs done at once: four bytes each make 256, so that a tap is read from four cache lines.
constexpr int kLanes = 64;

/// Fast taps come in fours; lists are padded with weights of zero.
constexpr int kTapGroup = 4;
constexpr int RoundUpToGroup(int taps) { return (taps + kTapGroup - 1) / kTapGroup * kTapGroup; }

/// One output's weights. The fast ones may leave out taps at both ends that are too light to matter.
struct Taps {
  const double* exact = nullptr;  ///< `count` weights
  int count = 0;
  const float* fast = nullptr;  ///< `fastCount` weights, a multiple of kTapGroup; the first is that of tap `fastFirst`
  int fastFirst = 0;
  int fastCount = 0;
  float tolerance = 0.0f;  ///< from Tolerance()
};

/// What a fast result may differ from the plain one, for samples of 0 to 255 and divisors of 0.5 or more.
float Tolerance(const Taps& taps) noexcept;

/// kLanes divisors of the results, and their reciprocals in float. All ones where nothing is divided.
struct Divisors {
  const double* exact;
  const float* reciprocal;
};
extern const Divisors kNoDivision;

/// Writes kLanes bytes. `in` points to the samples of tap 0.
void SumToBytes(const float* in, std::ptrdiff_t pitch, const Taps& taps, const Divisors& divisors,
                std::uint8_t* out) noexcept;

/// Bytes to floats.
void WidenBytes(const std::uint8_t* from, std::size_t count, float* to) noexcept;

/// A zeroed working array, or null.
template <typename T>
std::unique_ptr<T[]> ScratchArray(std::size_t count) noexcept {
  return std::unique_ptr<T[]>(new (std::nothrow) T[count]());
}

}  // namespace glyphmotion
