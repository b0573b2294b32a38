// SPDX-License-Identifier: MIT
#include "effects/bulge.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kPiece = 4096;  // places between two looks whether the run shall end

BulgeTables::Entry MakeEntry(int width, int height) {
  BulgeTables::Entry entry;
  entry.quarter = MakeDiscQuarter(width, height);
  entry.sine.resize(entry.quarter.distance.size());
  for (std::size_t i = 0; i < entry.sine.size(); ++i) {
    if (i % kPiece == 0 && EndRequested()) break;
    entry.sine[i] = std::sin((entry.quarter.distance[i] * (std::numbers::pi / 2)) / entry.quarter.radius);
  }
  entry.factor.resize(entry.sine.size());
  return entry;
}

void BulgeTo(BulgeTables::Entry& entry, int percent) {
  if (entry.percent == percent) return;
  const double power = -(percent / 100.0);
  for (std::size_t first = 0; first < entry.factor.size(); first += kPiece) {
    if (EndRequested()) return;
    for (std::size_t i = first; i < std::min(first + kPiece, entry.factor.size()); ++i)
      entry.factor[i] = entry.quarter.distance[i] > 0 ? std::pow(entry.sine[i], power) : 1.0;
  }
  entry.percent = percent;
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
  BulgeTo(entry, percent);
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
