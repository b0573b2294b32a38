// SPDX-License-Identifier: MIT
#include "effects/twist.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "image/angles.h"
#include "image/filters.h"

namespace glyphmotion {
namespace {

TwistTables::Entry MakeEntry(int width, int height) {
  TwistTables::Entry entry;
  entry.quarter = MakeDiscQuarter(width, height);
  entry.fall = std::move(entry.quarter.distance);
  entry.quarter.distance = {};
  ForPlaces(entry.fall.size(), [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) entry.fall[i] = 1 - entry.fall[i] / entry.quarter.radius;
  });
  return entry;
}

// The sines and cosines of a picture's places; masks of one size that turn by the same angle share them.
bool TurnTo(TwistTables::Entry& entry, int angleDegrees) {
  if (entry.turned && entry.angle == angleDegrees) return true;
  const double angle = Radians(angleDegrees);
  entry.angle = angleDegrees;
  ReservePlaces(entry.cosine, entry.fall.size());
  ReservePlaces(entry.sine, entry.fall.size());
  return entry.turned = ForPlaces(entry.fall.size(), [&](std::size_t begin, std::size_t end) {
           GrowTo(entry.cosine, end);
           GrowTo(entry.sine, end);
           for (std::size_t i = begin; i < end; ++i) {
             const double t = entry.fall[i], theta = t * angle * t;
             entry.cosine[i] = std::cos(theta);
             entry.sine[i] = std::sin(theta);
           }
         });
}

// The places of one row, turned.
GLYPHMOTION_CLONES
void TurnRow(const DiscRow& row, const double* __restrict cosine, const double* __restrict sine, RowOffsets& to) {
  const double* __restrict dx = row.dx;
  double* __restrict belowX = to.belowX.data(), * __restrict belowY = to.belowY.data();
  double* __restrict aboveX = to.aboveX.data(), * __restrict aboveY = to.aboveY.data();
  const double dy = row.dy, aspectX = row.aspectX, aspectY = row.aspectY;
  for (std::size_t i = 0, places = row.places; i < places; ++i) {
    const double cx = cosine[i] * dx[i], sx = sine[i] * dx[i], cy = cosine[i] * dy, sy = sine[i] * dy;
    belowX[i] = (cx - sy) / aspectX;
    belowY[i] = (sx + cy) / aspectY;
    aboveX[i] = (cx + sy) / aspectX;
    aboveY[i] = (sx - cy) / aspectY;
  }
}

void TwistInto(const DibView& from, const DibView& to, const TwistTables::Entry& entry) {
  const DiscQuarter& quarter = entry.quarter;
  RowOffsets offsets(quarter.dx.size());
  for (int row = 0; row < quarter.Rows(); ++row) {
    const DiscRow places = RowOf(quarter, row);
    TurnRow(places, entry.cosine.data() + places.start, entry.sine.data() + places.start, offsets);
    SampleMirrored(quarter, row, offsets, from, to);
  }
}

bool SameBytes(const PackedDib& a, const PackedDib& b) {
  const std::size_t bytes = BlockSize(a.Handle());
  if (!a || !b || BlockSize(b.Handle()) != bytes || bytes < sizeof(DibHeader)) return false;
  const LockedBlock<DibHeader> one(a.Handle()), other(b.Handle());
  return one && other && std::memcmp(one.get(), other.get(), bytes) == 0;
}

}  // namespace

const PackedDib* DoubledMasks::Double(const PackedDib& mask) {
  for (Entry& entry : entries_) {
    if (entry.doubled && SameBytes(entry.mask, mask)) return &entry.doubled;
  }
  Entry& entry = entries_[std::exchange(next_, (next_ + 1) % 3)];
  entry = {};
  entry.doubled = ResampleByPercent(mask, 200, 200);
  if (!entry.doubled) return nullptr;
  // Without its mask an entry is never found again.
  if (BlockSize(entry.doubled.Handle()) <= kMaxBytes / 3) entry.mask = DuplicateDib(mask);
  return &entry.doubled;
}

PackedDib Twist(const PackedDib& source, int angleDegrees, TwistTables& tables) {
  PackedDib result = DuplicateDib(source);
  const DibView from(source), to(result);
  if (!CanWarp(from) || !to) return {};
  TwistTables::Entry& entry =
      tables.recent.Find(from.Width(), from.Height(), [&] { return MakeEntry(from.Width(), from.Height()); });
  if (!TurnTo(entry, angleDegrees)) return {};
  TwistInto(from, to, entry);
  return result;
}

PackedDib TwistMask(const PackedDib& source, int angleDegrees, bool smooth, TwistTables& tables,
                    DoubledMasks* doubled) {
  if (!smooth) return Twist(source, angleDegrees, tables);
  PackedDib enlarged;
  const PackedDib* working = &enlarged;
  if (doubled) {
    working = doubled->Double(source);
  } else {
    enlarged = ResampleByPercent(source, 200, 200);
  }
  if (!working || !*working) return {};
  const PackedDib twisted = Twist(*working, angleDegrees, tables);
  return twisted ? ResampleByPercent(twisted, 50, 50) : PackedDib();
}

int TwistAngle(int degrees, double phase) noexcept {
  const double climb = phase > 0.5 ? 0.5 - (phase - 0.5) : phase;
  return static_cast<int>(degrees * climb + degrees * climb);
}

}  // namespace glyphmotion
