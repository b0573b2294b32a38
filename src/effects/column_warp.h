// SPDX-License-Identifier: MIT
// Warps that move the pixels of each column by a rule of that column's own. They work on a picture enlarged to 400
// percent, which is reduced again afterwards: so columns may move by quarters of a pixel.
#pragma once

#include <functional>
#include <span>

#include "image/packed_dib.h"

namespace glyphmotion {

/// Enlarged columns to a column of the picture.
constexpr int kWarpScale = 4;

/// Moves column left + x of `from` down by drop[left + x] rows, to column x of `to`, for all columns of `to`, which is
/// blank and of the same height and depth (8, 24 or 32 bits). Drops are 0 or more; what leaves the picture is lost.
void LowerColumns(const DibView& from, const DibView& to, int left, std::span<const int> drop) noexcept;

/// Squeezes column left + x of `from` to percent[left + x] percent (0 to 100) of its height, about its middle, into
/// column x of `to`, on the terms of LowerColumns. Each sample is the whole-number mean of those that it replaces. 100
/// copies; 0 leaves the column blank.
void SqueezeColumns(const DibView& from, const DibView& to, int left, std::span<const int> percent) noexcept;

/// Enlarged columns begin to end - 1.
struct ColumnSpan {
  int begin = 0, end = 0;
};

/// One layer of the frames of a run (a mask or a fill), warped anew for each. A text that stands still has the same
/// layers in every frame, so the enlarged source is kept; and only the columns that move are made anew. The result is
/// always that of enlarging, warping and reducing the whole picture.
class WarpedLayer {
 public:
  /// Writes columns `left` and on of the enlarged picture, warped, into `to`.
  using Columns = std::function<void(const DibView& from, const DibView& to, int left)>;

  /// `source`, warped, of the same size, depth and palette; Empty when out of memory. `moving` holds the enlarged
  /// columns that the warp of this frame changes: those outside it come out alike in all frames of a run.
  PackedDib Warp(PackedDib source, ColumnSpan moving, const Columns& warp);

 private:
  bool Redraw(ColumnSpan changed, const Columns& warp);

  PackedDib source_, enlarged_;
  PackedDib warped_;  ///< the last result
  ColumnSpan moved_;  ///< and the columns that it moved
};

}  // namespace glyphmotion
