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

// Fractions closer to 1 than this take the slow path, since X + 1 may be rounded up to the next whole number there.
constexpr double kSafeFraction = 1.0 - 1.0 / (1 << 20);

// Where a run of places samples, a block at a time, so that the compiler makes vectors of the arithmetic.
struct Places {
  static constexpr std::size_t kMost = 256;
  double fx[kMost], fy[kMost];  // right and below of the upper left pixel
  std::int32_t offset[kMost];   // of the upper left pixel from the top row; rows below precede it
  std::int32_t plain[kMost];    // all ones where all four pixels are inside, or 0
  std::int32_t p00[kMost], p10[kMost], p01[kMost], p11[kMost];
  std::int32_t mixed[kMost];
};

struct Grid {
  double centreX, centreY;
  std::int32_t lastX, lastY, stride, bytes;
};

GLYPHMOTION_CLONES
void FindPlaces(const double* __restrict x, const double* __restrict y, double sign, std::size_t count,
                const Grid& grid, Places& __restrict places) {
  const double centreX = grid.centreX, centreY = grid.centreY, lastX = grid.lastX, lastY = grid.lastY;
  const auto bytes = static_cast<std::uint32_t>(grid.bytes), stride = static_cast<std::uint32_t>(grid.stride);
  for (std::size_t i = 0; i < count; ++i) {
    const double X = (sign * x[i] + centreX) + 0.5, Y = (sign * y[i] + centreY) + 0.5;
    const auto x0 = static_cast<std::int32_t>(X), y0 = static_cast<std::int32_t>(Y);
    const double fx = X - x0, fy = Y - y0;
    places.fx[i] = fx;
    places.fy[i] = fy;
    // Masks of the width of the numbers, all ones or zero, so that nothing branches.
    std::int32_t plain = -(X >= 0) & -(X < lastX) & -(Y >= 0) & -(Y < lastY);
    plain &= -(fx < kSafeFraction) & -(fy < kSafeFraction);
    places.plain[i] = plain;
    const auto column = static_cast<std::uint32_t>(x0), row = static_cast<std::uint32_t>(y0);
    places.offset[i] = static_cast<std::int32_t>(column * bytes - row * stride) & plain;
  }
}

GLYPHMOTION_CLONES
void MixPlaces(Places& places, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    places.mixed[i] = static_cast<std::int32_t>(
        Mix(places.p00[i], places.p10[i], places.p01[i], places.p11[i], places.fx[i], places.fy[i]));
}

// The channel `c` of the four pixels around each place; false when all are 0.
template <std::size_t bytes>
bool Collect(const std::uint8_t* first, std::ptrdiff_t stride, std::size_t c, std::size_t count, Places& places) {
  std::uint32_t any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t *upper = first + places.offset[i] + c, *lower = upper - stride;
    any |=
        static_cast<std::uint32_t>(places.p00[i] = upper[0]) | static_cast<std::uint32_t>(places.p10[i] = upper[bytes]);
    any |=
        static_cast<std::uint32_t>(places.p01[i] = lower[0]) | static_cast<std::uint32_t>(places.p11[i] = lower[bytes]);
  }
  return any != 0;
}

template <std::size_t bytes>
void TakeSamples(const DibView& from, double centreX, double centreY, Samples run) {
  const Grid grid = {centreX,
                     centreY,
                     from.Width() - 1,
                     from.Height() - 1,
                     static_cast<std::int32_t>(from.Stride()),
                     static_cast<std::int32_t>(bytes)};
  Places places;
  // A picture of one row or column has no place with four pixels.
  const bool anyInside = grid.lastX > 0 && grid.lastY > 0;
  while (run.count > 0) {
    const std::size_t count = std::min(run.count, Places::kMost);
    FindPlaces(run.x, run.y, run.sign, count, grid, places);
    for (std::size_t c = 0; c < bytes && anyInside; ++c) {
      if (Collect<bytes>(from.Row(0), grid.stride, c, count, places))
        MixPlaces(places, count);
      else
        std::fill_n(places.mixed, count, 0);
      std::uint8_t* to = run.to + c;
      for (std::size_t i = 0; i < count; ++i, to += run.step) *to = static_cast<std::uint8_t>(places.mixed[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (places.plain[i]) continue;
      const double X = (run.sign * run.x[i] + centreX) + 0.5, Y = (run.sign * run.y[i] + centreY) + 0.5;
      StorePixel(run.to + static_cast<std::ptrdiff_t>(i) * run.step, SampleAt(from, X, Y), bytes);
    }
    run.x += count;
    run.y += count;
    run.to += static_cast<std::ptrdiff_t>(count) * run.step;
    run.count -= count;
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
  // The ellipse's area, and no more than a place for each pixel of its sides: growing would copy all.
  const double sides = static_cast<double>(quarter.dx.size() + quarter.dy.size());
  const double area = static_cast<double>(quarter.dx.size()) * static_cast<double>(quarter.dy.size());
  ReservePlaces(quarter.distance, static_cast<std::size_t>(area * 0.7854 + sides));
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
