// SPDX-License-Identifier: MIT
#include "effects/disc_warp.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// The four pixels around a place that has its half pixel already; those outside are 0.
struct Neighbours {
  std::uint32_t p00 = 0, p10 = 0, p01 = 0, p11 = 0;
};

Neighbours NeighboursOf(const DibView& bitmap, double X, double Y) {
  const int x0 = static_cast<int>(X), y0 = static_cast<int>(Y);
  const int x1 = static_cast<int>(X + 1), y1 = static_cast<int>(Y + 1);
  const bool left = X >= 0, top = Y >= 0, right = bitmap.Width() > X + 1, bottom = bitmap.Height() > Y + 1;
  Neighbours found;
  if (left && top) found.p00 = bitmap.GetPixel(x0, y0);
  if (right && top) found.p10 = bitmap.GetPixel(x1, y0);
  if (left && bottom) found.p01 = bitmap.GetPixel(x0, y1);
  if (right && bottom) found.p11 = bitmap.GetPixel(x1, y1);
  return found;
}

inline double Mix(double p00, double p10, double p01, double p11, double fx, double fy) {
  return (p00 * (1 - fx) + p10 * fx) * (1 - fy) + (p01 * (1 - fx) + p11 * fx) * fy;
}

// The sample at a place that has its half pixel already.
std::uint32_t SampleAt(const DibView& bitmap, double X, double Y) {
  if (X < -1 || X >= bitmap.Width() || Y < -1 || Y >= bitmap.Height()) return 0;
  const Neighbours p = NeighboursOf(bitmap, X, Y);
  const double fx = X - std::floor(X), fy = Y - std::floor(Y);
  if (bitmap.Bits() <= 8) return static_cast<std::uint32_t>(Mix(p.p00, p.p10, p.p01, p.p11, fx, fy));
  std::uint32_t pixel = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const auto channel = [shift](std::uint32_t value) { return static_cast<double>((value >> shift) & 0xFF); };
    const double mixed = Mix(channel(p.p00), channel(p.p10), channel(p.p01), channel(p.p11), fx, fy);
    pixel |= static_cast<std::uint32_t>(mixed) << shift;
  }
  return pixel;
}

void StorePixel(std::uint8_t* to, std::uint32_t pixel, std::size_t bytes) {
  if (bytes == 1) {
    *to = static_cast<std::uint8_t>(pixel);
  } else {
    to[0] = static_cast<std::uint8_t>(pixel >> 16);
    to[1] = static_cast<std::uint8_t>(pixel >> 8);
    to[2] = static_cast<std::uint8_t>(pixel);
  }
}

// One run of samples at the centre plus `sign` times the offsets, written `step` bytes apart.
struct Samples {
  const double* x;
  const double* y;
  double sign;
  std::size_t count;
  std::uint8_t* to;
  std::ptrdiff_t step;
};

// Fractions closer to 1 than this go the careful way, since X + 1 may be rounded up to the next whole number there.
constexpr double kSafeFraction = 1.0 - 1.0 / (1 << 20);

// Places with all four pixels inside are done here, those whose pixels are all zero without arithmetic.
template <std::size_t bytes>
void TakeSamples(const DibView& from, double centreX, double centreY, const Samples& run) {
  const auto lastX = static_cast<unsigned>(from.Width() - 1), lastY = static_cast<unsigned>(from.Height() - 1);
  const auto stride = static_cast<std::ptrdiff_t>(from.Stride());
  const std::uint8_t* topRow = from.Row(0);  // rows below stand before it
  std::uint8_t* to = run.to;
  for (std::size_t i = 0; i < run.count; ++i, to += run.step) {
    const double X = (run.sign * run.x[i] + centreX) + 0.5, Y = (run.sign * run.y[i] + centreY) + 0.5;
    const int x0 = static_cast<int>(X), y0 = static_cast<int>(Y);
    const double fx = X - x0, fy = Y - y0;
    const bool plain = (static_cast<unsigned>(x0) < lastX) & (static_cast<unsigned>(y0) < lastY) & (fx >= 0) &
                       (fx < kSafeFraction) & (fy >= 0) & (fy < kSafeFraction);
    if (!plain) {
      StorePixel(to, SampleAt(from, X, Y), bytes);
      continue;
    }
    const std::uint8_t* upper = topRow - y0 * stride + x0 * static_cast<std::ptrdiff_t>(bytes);
    const std::uint8_t* lower = upper - stride;
    if constexpr (bytes == 1) {
      std::uint16_t upperPair, lowerPair;
      std::memcpy(&upperPair, upper, 2);
      std::memcpy(&lowerPair, lower, 2);
      *to = (upperPair | lowerPair) == 0
                ? std::uint8_t{0}
                : static_cast<std::uint8_t>(static_cast<int>(Mix(upper[0], upper[1], lower[0], lower[1], fx, fy)));
    } else {
      for (std::size_t c = 0; c < bytes; ++c) {
        to[c] = static_cast<std::uint8_t>(
            static_cast<int>(Mix(upper[c], upper[c + bytes], lower[c], lower[c + bytes], fx, fy)));
      }
    }
  }
}

void TakeSamples(const DiscQuarter& quarter, const DibView& from, const Samples& run) {
  if (from.Bits() == 8) {
    TakeSamples<1>(from, quarter.centreX, quarter.centreY, run);
  } else {
    TakeSamples<3>(from, quarter.centreX, quarter.centreY, run);
  }
}

// Distances of the columns (or rows) from `first` to `side` inclusive.
std::vector<double> ScaledDistances(int first, int side, double centre, double aspect) {
  std::vector<double> distances;
  for (int i = first; i <= side; ++i) distances.push_back((i - centre) * aspect);
  return distances;
}

}  // namespace

DiscQuarter MakeDiscQuarter(int width, int height) {
  DiscQuarter quarter;
  quarter.width = width;
  quarter.height = height;
  quarter.centreX = width * 0.5;
  quarter.centreY = height * 0.5;
  quarter.radius = std::max(quarter.centreX, quarter.centreY);
  if (width > height) quarter.aspectY = static_cast<double>(width) / height;
  if (width < height) quarter.aspectX = static_cast<double>(height) / width;
  quarter.firstX = (width + 1) / 2;
  quarter.firstY = (height + 1) / 2;
  quarter.dx = ScaledDistances(quarter.firstX, width, quarter.centreX, quarter.aspectX);
  quarter.dy = ScaledDistances(quarter.firstY, height, quarter.centreY, quarter.aspectY);
  const double limit = quarter.radius * quarter.radius;
  for (const double dy : quarter.dy) {
    quarter.start.push_back(quarter.distance.size());
    if (EndRequested()) continue;
    for (const double dx : quarter.dx) {
      const double square = dx * dx + dy * dy;
      if (square >= limit) break;
      quarter.distance.push_back(std::sqrt(square));
    }
  }
  quarter.start.push_back(quarter.distance.size());
  return quarter;
}

void SampleMirrored(const DiscQuarter& quarter, int row, const RowOffsets& offsets, const DibView& from,
                    const DibView& to) noexcept {
  if (EndRequested()) return;
  const std::size_t places = quarter.PlacesOf(row);
  const auto rightPlaces = std::min(places, static_cast<std::size_t>(quarter.width - quarter.firstX));
  const std::ptrdiff_t bytes = to.Bits() / 8;
  const std::ptrdiff_t right = quarter.firstX * bytes, left = (quarter.width - quarter.firstX) * bytes;
  const int below = quarter.firstY + row, above = quarter.height - below;
  const double *belowX = offsets.belowX.data(), *belowY = offsets.belowY.data();
  const double *aboveX = offsets.aboveX.data(), *aboveY = offsets.aboveY.data();
  if (below < quarter.height) {
    TakeSamples(quarter, from, {belowX, belowY, 1.0, rightPlaces, to.Row(below) + right, bytes});
    TakeSamples(quarter, from, {aboveX, aboveY, -1.0, places, to.Row(below) + left, -bytes});
  }
  if (above != below) {
    TakeSamples(quarter, from, {aboveX, aboveY, 1.0, rightPlaces, to.Row(above) + right, bytes});
    TakeSamples(quarter, from, {belowX, belowY, -1.0, places, to.Row(above) + left, -bytes});
  }
}

}  // namespace glyphmotion
