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

/// What a fast result may differ from the plain one before a division, for samples of 0 to 255.
float Tolerance(const Taps& taps) noexcept;

/// kLanes divisors of the results, from 0.5 to 1, and their reciprocals in float. All ones where nothing is divided.
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

/// Vectors that straddle a cache line load at half the pace.
constexpr std::align_val_t kScratchAlignment{64};

struct FreeScratch {
  void operator()(void* data) const noexcept { ::operator delete[](data, kScratchAlignment); }
};
template <typename T>
using Scratch = std::unique_ptr<T[], FreeScratch>;

/// A zeroed working array of plain values, or null.
template <typename T>
Scratch<T> ScratchArray(std::size_t count) noexcept {
  return Scratch<T>(new (kScratchAlignment, std::nothrow) T[count]());
}

}  // namespace glyphmotion
