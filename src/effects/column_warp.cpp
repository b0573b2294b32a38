// SPDX-License-Identifier: MIT
#include "effects/column_warp.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "image/filters.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

// Neighbouring columns mostly move alike, so the work goes by runs of columns with one value, at most kRunBytes wide.
constexpr int kRunBytes = 192;

// Bytes of a run in `from` and in `to`.
struct Run {
  int from, to, bytes, value;
};

template <typename Work>
void ForEachRun(const DibView& to, int left, std::span<const int> values, Work work) {
  const int channels = to.Bits() / 8, most = kRunBytes / channels;
  for (int x = 0, end = 0; x < to.Width() && !EndRequested(); x = end) {
    const auto valueOf = [&](int column) { return values[static_cast<std::size_t>(left + column)]; };
    for (end = x + 1; end < to.Width() && end - x < most && valueOf(end) == valueOf(x);) ++end;
    work(Run{(left + x) * channels, x * channels, (end - x) * channels, valueOf(x)});
  }
}

// Most runs are a few bytes wide, for which calling memcpy in every row takes longer than copying.
void CopyRun(std::uint8_t* to, const std::uint8_t* from, int bytes) {
  for (; bytes >= 4; bytes -= 4, to += 4, from += 4) std::memcpy(to, from, 4);
  for (; bytes > 0; --bytes) *to++ = *from++;
}

// Multiplying by it and shifting divides: exact up to 100 bytes' sum, the most that one sample averages.
constexpr int kShift = 22;
constexpr std::uint32_t ReciprocalOf(int count) {
  return ((std::uint32_t{1} << kShift) + static_cast<std::uint32_t>(count) - 1) / static_cast<std::uint32_t>(count);
}

// The mean of `count` rows of a run, each `stride` bytes before the one above it.
void AverageRows(const std::uint8_t* row, std::size_t stride, int count, int bytes, std::uint8_t* out) {
  if (count == 1) {
    CopyRun(out, row, bytes);
    return;
  }
  std::uint32_t sums[kRunBytes];
  for (int i = 0; i < bytes; ++i) sums[i] = row[i];
  for (int k = 1; k < count; ++k) {
    row -= stride;
    for (int i = 0; i < bytes; ++i) sums[i] += row[i];
  }
  const std::uint32_t reciprocal = ReciprocalOf(count);
  for (int i = 0; i < bytes; ++i) out[i] = static_cast<std::uint8_t>(sums[i] * reciprocal >> kShift);
}

bool SameDib(const PackedDib& a, const PackedDib& b) {
  const DibView viewA(a), viewB(b);
  if (!viewA || !viewB || viewA.Width() != viewB.Width() || viewA.Height() != viewB.Height() ||
      viewA.Bits() != viewB.Bits()) {
    return false;
  }
  return std::memcmp(&viewA.Header(), &viewB.Header(), DibSize(viewA.Width(), viewA.Height(), viewA.Bits())) == 0;
}

// Reducing by the three-lobed filter looks this far to both sides, in pixels of the result, and one for safety.
constexpr int kReach = 4;

}  // namespace

void LowerColumns(const DibView& from, const DibView& to, int left, std::span<const int> drop) noexcept {
  ForEachRun(to, left, drop, [&](const Run& run) {
    for (int y = 0; y + run.value < to.Height(); ++y)
      CopyRun(to.Row(y + run.value) + run.to, from.Row(y) + run.from, run.bytes);
  });
}

void SqueezeColumns(const DibView& from, const DibView& to, int left, std::span<const int> percent) noexcept {
  const int height = to.Height();
  ForEachRun(to, left, percent, [&](const Run& run) {
    if (run.value < 1) return;
    const int rows = static_cast<int>(std::int64_t{height} * run.value / 100), top = (height - rows) / 2;
    // rows * 100 / value is never beyond the height, so that all rows of a mean exist.
    for (int k = 0, first = 0; k < rows; ++k) {
      const int end = static_cast<int>((std::int64_t{k} + 1) * 100 / run.value);
      AverageRows(from.Row(first) + run.from, from.Stride(), end - first, run.bytes, to.Row(top + k) + run.to);
      first = end;
    }
  });
}

PackedDib WarpedLayer::Warp(PackedDib source, ColumnSpan moving, const Columns& warp) {
  if (!SameDib(source, source_)) {
    warped_.Reset();
    enlarged_ = ResampleByPercent(source, 100 * kWarpScale, 100 * kWarpScale);
    source_ = std::move(source);
  }
  ColumnSpan changed = moving;
  if (moving.begin >= moving.end) {
    changed = moved_;
  } else if (moved_.begin < moved_.end) {
    changed = {std::min(moving.begin, moved_.begin), std::max(moving.end, moved_.end)};
  }
  moved_ = moving;
  if (!enlarged_ || !Redraw(changed, warp)) {
    warped_.Reset();
    return {};
  }
  return DuplicateDib(warped_);
}

bool WarpedLayer::Redraw(ColumnSpan changed, const Columns& warp) {
  const DibView from(enlarged_);
  if (!from) return false;
  const int width = from.Width() / kWarpScale;
  // Columns of the result that change, and the part that has to be reduced to make them.
  int first = 0, end = width;
  if (warped_) {
    if (changed.begin >= changed.end) return true;
    first = std::clamp(changed.begin / kWarpScale - kReach, 0, width);
    end = std::clamp(changed.end / kWarpScale + kReach, first, width);
    if (first == end) return true;
  }
  const int left = std::max(0, first - kReach), right = std::min(width, end + kReach);
  PackedDib large = BlankLike(from, (right - left) * kWarpScale, from.Height());
  {
    const DibView to(large);
    if (!to) return false;
    warp(from, to, left * kWarpScale);
  }
  PackedDib part = ResampleByPercent(large, 100 / kWarpScale, 100 / kWarpScale);
  if (!part) return false;
  if (!warped_ || (left == 0 && right == width)) {
    warped_ = std::move(part);
    return true;
  }
  const DibView picture(warped_), piece(part);
  return picture && piece && CopyRegion(picture, first, 0, piece, first - left, 0, end - first, picture.Height());
}

}  // namespace glyphmotion
