// SPDX-License-Identifier: MIT
#include "image/tap_sums.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace glyphmotion {
namespace {

struct Ones {
  double exact[kLanes];
  float reciprocal[kLanes];
  constexpr Ones() : exact(), reciprocal() {
    for (int l = 0; l < kLanes; ++l) {
      exact[l] = 1.0;
      reciprocal[l] = 1.0f;
    }
  }
};
constexpr Ones kOnes;

// The float results of all lanes. Flags in `doubtful` those that are too close to a whole number from 1 to 255, and
// counts them. (Beyond these the byte is 0 or 255 on either side.) Each loop uses one type, so that compilers vectorise
// all of them.
GLYPHMOTION_CLONES
int FastSums(const float* in, std::ptrdiff_t pitch, const float* weights, int count, const float* reciprocal,
             float tolerance, std::uint8_t* out, std::int32_t* doubtful) {
  float sum[kLanes];
  for (int l = 0; l < kLanes; ++l) sum[l] = 0.0f;
  for (int t = 0; t < count; t += kTapGroup) {
    const float *p0 = in + t * pitch, *p1 = p0 + pitch, *p2 = p1 + pitch, *p3 = p2 + pitch;
    const float w0 = weights[t], w1 = weights[t + 1], w2 = weights[t + 2], w3 = weights[t + 3];
    for (int l = 0; l < kLanes; ++l) sum[l] = sum[l] + w0 * p0[l] + w1 * p1[l] + w2 * p2[l] + w3 * p3[l];
  }
  std::int32_t whole[kLanes], doubts = 0;
  for (int l = 0; l < kLanes; ++l) {
    const float v = (sum[l] + 0.5f) * reciprocal[l];
    const float near = tolerance * reciprocal[l];
    // Only the distance counts, on either side of a half. NOLINTNEXTLINE(bugprone-incorrect-roundings)
    const float distance = v - static_cast<float>(static_cast<std::int32_t>(v + 0.5f));
    const std::int32_t doubt = (distance < near) & (distance > -near) & (v > 1.0f - near) & (v < 255.0f + near);
    whole[l] = static_cast<std::int32_t>(v);
    doubtful[l] = doubt;
    doubts += doubt;
  }
  for (int l = 0; l < kLanes; ++l) {
    const std::int32_t low = whole[l] < 0 ? 0 : whole[l];
    out[l] = static_cast<std::uint8_t>(low > 255 ? 255 : low);
  }
  return doubts;
}

std::uint8_t RoundSum(double sum, double divisor) {
  sum = std::clamp(sum, 0.0, 255.0);
  return static_cast<std::uint8_t>((sum + 0.5) / divisor);
}

std::uint8_t PlainSum(const float* in, std::ptrdiff_t pitch, const Taps& taps, double divisor) {
  double sum = 0.0;
  for (int t = 0; t < taps.count; ++t) sum += static_cast<double>(in[t * pitch]) * taps.exact[t];
  return RoundSum(sum, divisor);
}

// The exact sums of all lanes, for pictures (mostly checkerboards) in which most results are doubtful.
GLYPHMOTION_CLONES
void PlainSums(const float* in, std::ptrdiff_t pitch, const Taps& taps, const double* divisors, std::uint8_t* out) {
  double sum[kLanes] = {};
  for (int t = 0; t < taps.count; ++t) {
    const float* p = in + t * pitch;
    const double w = taps.exact[t];
    for (int l = 0; l < kLanes; ++l) sum[l] += static_cast<double>(p[l]) * w;
  }
  for (int l = 0; l < kLanes; ++l) out[l] = RoundSum(sum[l], divisors[l]);
}

constexpr int kFewDoubts = 6;  // from here on a whole vector of exact sums costs less than single ones

}  // namespace

const Divisors kNoDivision = {kOnes.exact, kOnes.reciprocal};

// With u = 2^-24 and n fast taps: each product and each of n additions rounds once, so the float sum is off by at most
// (n + 1) u times the sum of |weight * sample|, plus the difference of the float weights (zero for omitted taps) from
// the double ones. Adding 0.5 rounds once more. A reciprocal, which is at least 1, multiplies all that and adds two
// roundings of a result below 257. The errors of the double sums are below 1e-10 and covered, as are second-order
// terms, by the last factor.
float Tolerance(const Taps& taps) noexcept {
  constexpr double u = 0x1p-24;
  double differences = 0.0, weights = 0.0;
  for (int t = 0; t < taps.count; ++t) {
    const int f = t - taps.fastFirst;
    const double fast = f >= 0 && f < taps.fastCount ? static_cast<double>(taps.fast[f]) : 0.0;
    differences += std::abs(taps.exact[t] - fast);
    weights += std::abs(fast);
  }
  const double sum = 255.0 * differences + (taps.fastCount + 1) * u * 255.0 * weights;
  return static_cast<float>((sum + 3.0 * 257.0 * u + 1e-9) * 1.05);
}

void SumToBytes(const float* in, std::ptrdiff_t pitch, const Taps& taps, const Divisors& divisors,
                std::uint8_t* out) noexcept {
  std::int32_t doubtful[kLanes];
  const int doubts = FastSums(in + taps.fastFirst * pitch, pitch, taps.fast, taps.fastCount, divisors.reciprocal,
                              taps.tolerance, out, doubtful);
  if (doubts == 0) return;
  if (doubts > kFewDoubts) {
    PlainSums(in, pitch, taps, divisors.exact, out);
    return;
  }
  for (int l = 0; l < kLanes; ++l) {
    if (doubtful[l]) out[l] = PlainSum(in + l, pitch, taps, divisors.exact[l]);
  }
}

void SumMirrored(const float* in, std::ptrdiff_t pitch, const Taps& taps, const Taps& mirroredTaps, std::uint8_t* out,
                 std::uint8_t* mirrored) noexcept {
  std::int32_t doubtful[kLanes];
  const int doubts = FastSums(in + taps.fastFirst * pitch, pitch, taps.fast, taps.fastCount, kNoDivision.reciprocal,
                              taps.tolerance, out, doubtful);
  std::memcpy(mirrored, out, kLanes);
  if (doubts == 0) return;
  const float* last = in + (taps.count - 1) * pitch;
  if (doubts > kFewDoubts) {
    PlainSums(in, pitch, taps, kNoDivision.exact, out);
    PlainSums(last, -pitch, mirroredTaps, kNoDivision.exact, mirrored);
    return;
  }
  for (int l = 0; l < kLanes; ++l) {
    if (!doubtful[l]) continue;
    out[l] = PlainSum(in + l, pitch, taps, 1.0);
    mirrored[l] = PlainSum(last + l, -pitch, mirroredTaps, 1.0);
  }
}

GLYPHMOTION_CLONES
void WidenBytes(const std::uint8_t* from, std::size_t count, float* to) noexcept {
  // By way of integers: some compilers vectorise each of the two steps, but not both at once.
  constexpr std::size_t kBlock = 64;
  std::int32_t whole[kBlock];
  for (; count >= kBlock; count -= kBlock, from += kBlock, to += kBlock) {
    for (std::size_t i = 0; i < kBlock; ++i) whole[i] = from[i];
    for (std::size_t i = 0; i < kBlock; ++i) to[i] = static_cast<float>(whole[i]);
  }
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<float>(from[i]);
}

}  // namespace glyphmotion
