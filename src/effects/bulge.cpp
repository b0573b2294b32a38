// SPDX-License-Identifier: MIT
#include "effects/bulge.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace glyphmotion {
namespace {

BulgeTables::Entry MakeEntry(int width, int height) {
  BulgeTables::Entry entry;
  entry.quarter = MakeDiscQuarter(width, height);
  const std::vector<double>& distance = entry.quarter.distance;
  ReservePlaces(entry.sine, distance.size());
  ForPlaces(distance.size(), [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i)
      entry.sine.push_back(std::sin((distance[i] * (std::numbers::pi / 2)) / entry.quarter.radius));
  });
  return entry;
}

// False when the run is to end.
bool BulgeTo(BulgeTables::Entry& entry, int percent) {
  if (entry.percent == percent) return true;
  const double power = -(percent / 100.0);
  ReservePlaces(entry.factor, entry.sine.size());
  const bool done = ForPlaces(entry.sine.size(), [&](std::size_t begin, std::size_t end) {
    GrowTo(entry.factor, end);
    for (std::size_t i = begin; i < end; ++i)
      entry.factor[i] = entry.quarter.distance[i] > 0 ? std::pow(entry.sine[i], power) : 1.0;
  });
  if (done) entry.percent = percent;
  return done;
}

GLYPHMOTION_CLONES
void BulgeRow(const DiscRow& row, const double* __restrict factor, RowOffsets& to) {
  const double* __restrict dx = row.dx;
  double* __restrict belowX = to.belowX.data(), * __restrict belowY = to.belowY.data();
  double* __restrict aboveX = to.aboveX.data(), * __restrict aboveY = to.aboveY.data();
  const double dy = row.dy, aspectX = row.aspectX, aspectY = row.aspectY;
  for (std::size_t i = 0, places = row.places; i < places; ++i) {
    belowX[i] = (dx[i] * factor[i]) / aspectX;
    belowY[i] = (dy * factor[i]) / aspectY;
    aboveX[i] = belowX[i];
    aboveY[i] = -belowY[i];
  }
}

}  // namespace

PackedDib BulgeBitmap(const PackedDib& source, int percent, BulgeTables& tables) {
  PackedDib result = DuplicateDib(source);
  if (percent == 0) return result;
  const DibView from(source), to(result);
  if (!CanWarp(from) || !to) return {};
  BulgeTables::Entry& entry =
      tables.recent.Find(from.Width(), from.Height(), [&] { return MakeEntry(from.Width(), from.Height()); });
  if (!BulgeTo(entry, percent)) return {};
  const DiscQuarter& quarter = entry.quarter;
  RowOffsets offsets(quarter.dx.size());
  for (int row = 0; row < quarter.Rows(); ++row) {
    const DiscRow places = RowOf(quarter, row);
    BulgeRow(places, entry.factor.data() + places.start, offsets);
    SampleMirrored(quarter, row, offsets, from, to);
  }
  return result;
}

}  // namespace glyphmotion
