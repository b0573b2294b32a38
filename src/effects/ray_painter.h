// SPDX-License-Identifier: MIT
// Rays with smooth edges: a wide line drawn three times too large and reduced to 33 percent.
//
// Read plainly, a ray costs a surface of nine times the picture's pixels, drawn and then resampled whole. But a ray is
// thin, and what it does not touch stays zero through both passes of the resampler. So the line is taken as spans, and
// only those outputs are summed whose windows meet one, by the resampler's own weights, in its own order and rounding:
// the weights that come out are those of the plain reading, to the byte.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <vector>

#include "image/packed_dib.h"
#include "image/resample_windows.h"
#include "image/surface.h"

namespace glyphmotion {

/// Paints rays on 24-bit pictures of one size.
class RayPainter {
 public:
  static constexpr int kOversize = 3, kReduction = 33;  // percent: not quite a third, so a ray ends a shade short

  /// False when rays of that size cannot be made. Costs nothing when the size is the one before.
  bool Prepare(int width, int height);

  /// Blends `colour` into the picture along a ray between two places, in pixels, of the given width and level (0 to
  /// 255). The picture has the size last prepared for.
  void Paint(const DibView& picture, Point from, Point to, int penWidth, int level, Colour colour);

 private:
  // One axis of the reduction. from[p] is the first output whose window reaches beyond position p; end[p] is the number
  // of outputs whose window begins before p.
  struct Axis {
    Contributions windows;
    std::vector<int> from, end;
    std::vector<std::size_t> begin;  // sums[begin[c] + k]: of the first k weights of output c
    std::vector<double> sums;
  };
  using Pieces = std::array<RowSpan, kLineParts>;  // of one line, by part or in order

  static bool PrepareAxis(int source, int target, Axis& axis);
  void TakeLine(Point from, Point to, int penWidth);
  void Cover(int line, LinePart part, int first, int end);
  const std::vector<std::uint8_t>& FullSums(int level);
  void SumAlong(int level);
  void SumAcrossAndBlend(const DibView& picture, Colour colour);

  int width_ = 0, height_ = 0;
  bool downFirst_ = false;            // lines are columns, not rows
  Axis along_, across_;               // of the first pass, which goes along the lines, and of the second
  std::vector<Pieces> pieces_;        // of each line
  RowSpan lines_;                     // those that the ray meets
  std::vector<RowSpan> touched_;      // outputs of each line that may not be zero
  std::vector<std::uint8_t> middle_;  // sums of the first pass, line by line
  std::vector<double> sums_;
  std::vector<std::uint8_t> weights_;
  std::map<int, std::vector<std::uint8_t>> fullSums_;  // by level
};

}  // namespace glyphmotion
