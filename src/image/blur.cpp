// SPDX-License-Identifier: MIT
// The Gaussian blur: two passes of one kernel of 41 taps, first along the rows, then down the columns of the result,
// with bytes between them.
//
// Both passes are vectors of weighted sums (tap_sums.h). Along a row, a vector is a run of neighbouring samples, and
// the next tap lies one pixel further; down the columns, a vector is a run of columns, and the next tap lies one row
// below. Lines are padded with 20 zeros on both sides, so that borders need no special case: the zeros add nothing, and
// the result is divided by the sum of the weights inside the line. Where all samples under the kernel are zero the
// result stays zero and is skipped: most of a text mask is empty.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "image/filters.h"
#include "image/tap_sums.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kTaps = 41;
constexpr int kReach = kTaps / 2;
constexpr int kFinest = kTaps * 3 / 2;  // the kernel is sampled at thirds of a step

struct Kernel {
  std::array<double, kTaps> weights{};
  std::array<float, RoundUpToGroup(kTaps)> fast{};
  Taps taps;
};

// Drops the small weights at both ends of the kernel for the fast sums; together they must not change a result by more
// than rounding does.
void MakeFastTaps(Kernel& kernel) {
  constexpr double kNegligible = 0x1p-26;
  int drop = 0;
  for (double dropped = 0.0; drop < kReach; ++drop) {
    dropped +=
        kernel.weights[static_cast<std::size_t>(drop)] + kernel.weights[static_cast<std::size_t>(kTaps - 1 - drop)];
    if (dropped > kNegligible) break;
  }
  const int count = kTaps - 2 * drop;
  for (int t = 0; t < count; ++t) {
    kernel.fast[static_cast<std::size_t>(t)] = static_cast<float>(kernel.weights[static_cast<std::size_t>(drop + t)]);
  }
  kernel.taps = {kernel.weights.data(), kTaps, kernel.fast.data(), drop, RoundUpToGroup(count), 0.0f};
  kernel.taps.tolerance = Tolerance(kernel.taps);
}

// A Gaussian of sigma = softness / 10, `softness` not 0.
void MakeKernel(int softness, Kernel& kernel) {
  const double sigma = softness / 10.0;
  double sum = 0.0;
  for (int i = -kFinest; i <= kFinest; ++i) {
    kernel.weights[static_cast<std::size_t>((i + kFinest) / 3)] += std::exp(-i * i / (sigma * 18.0 * sigma));
  }
  for (double weight : kernel.weights) sum += weight;
  for (double& weight : kernel.weights) weight /= sum;
  MakeFastTaps(kernel);
}

// The sum of the weights inside a line of n samples when the kernel is centred on sample i; 1 where all of them are.
double DivisorAt(const Kernel& kernel, int i, int n) {
  if (i >= kReach && i < n - kReach) return 1.0;
  const int first = std::max(kReach - i, 0), end = std::min(kTaps, kReach - i + n);
  double sum = 0.0;
  for (int t = first; t < end; ++t) sum += kernel.weights[static_cast<std::size_t>(t)];
  return sum;
}

// A picture as lines of bytes, top row first.
struct Plane {
  std::uint8_t* top;
  std::ptrdiff_t pitch;
  int width, height, channels;  // pixels, rows, bytes per pixel
  std::uint8_t* Row(int y) const { return top + y * pitch; }
  int Samples() const { return width * channels; }
};

Plane PlaneOf(const DibView& view) {
  return {view.Row(0), -static_cast<std::ptrdiff_t>(view.Stride()), view.Width(), view.Height(),
          view.Bits() == 8 ? 1 : 3};
}

bool BlurRows(const Plane& plane, const Kernel& kernel) {
  if (plane.width < kTaps) return true;
  const int samples = plane.Samples(), margin = kReach * plane.channels;
  // Vectors may read past the right end, and padded taps past the padding.
  const auto length = static_cast<std::size_t>(samples + 2 * margin + kLanes + kTapGroup * plane.channels);
  const auto line = ScratchArray<float>(length);
  const auto divisors = ScratchArray<double>(length);
  const auto reciprocals = ScratchArray<float>(length);
  if (!line || !divisors || !reciprocals) return false;
  for (int i = 0; i < samples + kLanes; ++i) {
    const auto at = static_cast<std::size_t>(i);
    divisors[at] = i < samples ? DivisorAt(kernel, i / plane.channels, plane.width) : 1.0;
    reciprocals[at] = static_cast<float>(1.0 / divisors[at]);
  }
  for (int y = 0; y < plane.height; ++y) {
    if (EndRequested()) return false;
    std::uint8_t* row = plane.Row(y);
    const int first = static_cast<int>(std::find_if(row, row + samples, [](int v) { return v != 0; }) - row);
    if (first == samples) continue;
    int end = samples;
    while (row[end - 1] == 0) --end;
    WidenBytes(row, static_cast<std::size_t>(samples), line.get() + margin);
    for (int x = std::max(first - margin, 0); x < std::min(end + margin, samples); x += kLanes) {
      std::uint8_t out[kLanes];
      SumToBytes(line.get() + x, plane.channels, kernel.taps, {divisors.get() + x, reciprocals.get() + x}, out);
      std::memcpy(row + x, out, static_cast<std::size_t>(std::min(kLanes, samples - x)));
    }
  }
  return true;
}

bool BlurColumns(const Plane& plane, const Kernel& kernel) {
  const int height = plane.height;
  if (height < kTaps) return true;
  const auto strip = ScratchArray<float>(static_cast<std::size_t>(height + 2 * kReach + kTapGroup) * kLanes);
  if (!strip) return false;
  for (int x = 0; x < plane.Samples(); x += kLanes) {
    if (EndRequested()) return false;
    const auto columns = static_cast<std::size_t>(std::min(kLanes, plane.Samples() - x));
    int first = height, end = 0;
    for (int y = 0; y < height; ++y) {
      const std::uint8_t* from = plane.Row(y) + x;
      float* to = strip.get() + (y + kReach) * kLanes;
      WidenBytes(from, columns, to);
      std::fill(to + columns, to + kLanes, 0.0f);
      if (std::any_of(from, from + columns, [](int v) { return v != 0; })) {
        first = std::min(first, y);
        end = y + 1;
      }
    }
    for (int y = std::max(first - kReach, 0); y < std::min(end + kReach, height); ++y) {
      double divisor[kLanes];
      float reciprocal[kLanes];
      Divisors divisors = kNoDivision;
      if (y < kReach || y >= height - kReach) {
        std::fill_n(divisor, kLanes, DivisorAt(kernel, y, height));
        std::fill_n(reciprocal, kLanes, static_cast<float>(1.0 / divisor[0]));
        divisors = {divisor, reciprocal};
      }
      std::uint8_t out[kLanes];
      SumToBytes(strip.get() + y * kLanes, kLanes, kernel.taps, divisors, out);
      std::memcpy(plane.Row(y) + x, out, columns);
    }
  }
  return true;
}

bool BlurPlane(const DibView& view, const Kernel& kernel) {
  const Plane plane = PlaneOf(view);
  return BlurRows(plane, kernel) && BlurColumns(plane, kernel);
}

// Copies the values of the palette forms, or the three colour bytes; alpha is unchanged.
void CopyChannels(const DibView& to, const DibView& from) {
  if (from.Bits() < 9) {
    CopyRegion(to, 0, 0, from, 0, 0, from.Width(), from.Height());
    return;
  }
  const int toSize = to.Bits() / 8, fromSize = from.Bits() / 8;
  for (int r = 0; r < from.Height(); ++r) {
    const std::uint8_t* source = from.StoredRow(r);
    std::uint8_t* target = to.StoredRow(r);
    for (int x = 0; x < from.Width(); ++x, source += fromSize, target += toSize) std::memcpy(target, source, 3);
  }
}

}  // namespace

PackedDib Blur(const PackedDib& source, int softness) noexcept {
  PackedDib result = DuplicateDib(source);
  {
    const DibView view(result);
    if (!view) return {};
    // A Gaussian of zero width changes nothing.
    if (softness == 0) return result;
    Kernel kernel;
    MakeKernel(softness, kernel);
    if (view.Bits() == 8 || view.Bits() == 24) {
      if (!BlurPlane(view, kernel)) return {};
    } else {
      const PackedDib bytes = BlankDib(view.Width(), view.Height(), nullptr, view.Bits() < 9 ? 8 : 24);
      const DibView plane(bytes);
      if (!plane) return {};
      CopyChannels(plane, view);
      if (!BlurPlane(plane, kernel)) return {};
      CopyChannels(view, plane);
    }
  }
  return result;
}

}  // namespace glyphmotion
