// SPDX-License-Identifier: MIT
#include "effects/ray_painter.h"

#include <algorithm>

#include "effects/colour_blend.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

bool IsEmpty(const RowSpan& span) { return span.left >= span.right; }

void Extend(RowSpan& span, int left, int right) {
  span = IsEmpty(span) ? RowSpan{left, right} : RowSpan{std::min(span.left, left), std::max(span.right, right)};
}

std::uint8_t RoundSum(double sum) { return static_cast<std::uint8_t>(std::clamp(sum, 0.0, 255.0) + 0.5); }

// Whether every sum of the same terms, in whatever order, becomes the same byte.
bool RoundsSurely(double sum) {
  constexpr double kMostError = 1e-9;  // far above that of any order
  if (sum < 0.25 || sum > 254.75) return true;
  const double above = sum + 0.5 - static_cast<int>(sum + 0.5);
  return above > kMostError && above < 1 - kMostError;
}

GLYPHMOTION_CLONES
void RoundSums(const double* __restrict sums, int count, std::uint8_t* __restrict bytes) {
  for (int i = 0; i < count; ++i) {
    const double low = sums[i] > 0.0 ? sums[i] : 0.0;
    bytes[i] = static_cast<std::uint8_t>(static_cast<int>((low < 255.0 ? low : 255.0) + 0.5));
  }
}

GLYPHMOTION_CLONES
void AddWeighted(const std::uint8_t* samples, double weight, int count, double* sums) {
  for (int i = 0; i < count; ++i) sums[i] += static_cast<double>(samples[i]) * weight;
}

// Parts that overlap or touch become one piece; the pieces come out in order. Returns how many there are.
template <typename Pieces>
int Merge(Pieces pieces, Pieces& merged) {
  std::sort(pieces.begin(), pieces.end(), [](const RowSpan& a, const RowSpan& b) { return a.left < b.left; });
  int count = 0;
  for (const RowSpan& piece : pieces) {
    if (IsEmpty(piece)) continue;
    if (count && piece.left <= merged[static_cast<std::size_t>(count - 1)].right) {
      RowSpan& last = merged[static_cast<std::size_t>(count - 1)];
      last.right = std::max(last.right, piece.right);
    } else {
      merged[static_cast<std::size_t>(count++)] = piece;
    }
  }
  return count;
}

}  // namespace

bool RayPainter::PrepareAxis(int source, int target, Axis& axis) {
  if (!FindContributions(source, target, kResampleFilters[kLanczosFilter], axis.windows)) return false;
  const auto first = [&](int c) { return axis.windows.first[static_cast<std::size_t>(c)]; };
  const auto end = [&](int c) { return first(c) + axis.windows.taps[static_cast<std::size_t>(c)].count; };
  axis.from.resize(static_cast<std::size_t>(source) + 1);
  axis.end.resize(static_cast<std::size_t>(source) + 1);
  int from = 0, before = 0;
  for (int position = 0; position <= source; ++position) {
    while (from < target && end(from) <= position) ++from;
    while (before < target && first(before) < position) ++before;
    axis.from[static_cast<std::size_t>(position)] = from;
    axis.end[static_cast<std::size_t>(position)] = before;
  }
  axis.begin.clear();
  axis.sums.clear();
  for (int c = 0; c < target; ++c) {
    const Taps& taps = axis.windows.taps[static_cast<std::size_t>(c)];
    axis.begin.push_back(axis.sums.size());
    axis.sums.push_back(0);
    for (int t = 0; t < taps.count; ++t) axis.sums.push_back(axis.sums.back() + taps.exact[t]);
  }
  return true;
}

bool RayPainter::Prepare(int width, int height) {
  if (width == width_ && height == height_) return true;
  width_ = height_ = 0;
  if (!DibSize(kOversize * width, kOversize * height, 24)) return false;
  const int largeWidth = kOversize * width, largeHeight = kOversize * height;
  // The sides that ResampleByPercent gives.
  const int smallWidth = static_cast<int>(largeWidth * kReduction / 100.0 + 0.5);
  const int smallHeight = static_cast<int>(largeHeight * kReduction / 100.0 + 0.5);
  downFirst_ = ResamplesDownFirst(largeWidth, largeHeight, smallWidth, smallHeight);
  const int length = downFirst_ ? largeHeight : largeWidth, lines = downFirst_ ? largeWidth : largeHeight;
  const int alongTarget = downFirst_ ? smallHeight : smallWidth, acrossTarget = downFirst_ ? smallWidth : smallHeight;
  if (!PrepareAxis(length, alongTarget, along_) || !PrepareAxis(lines, acrossTarget, across_)) return false;
  pieces_.assign(static_cast<std::size_t>(lines), {});
  touched_.assign(static_cast<std::size_t>(lines), {});
  middle_.assign(static_cast<std::size_t>(lines) * static_cast<std::size_t>(alongTarget), 0);
  sums_.assign(static_cast<std::size_t>(alongTarget), 0.0);
  weights_.assign(static_cast<std::size_t>(alongTarget), 0);
  fullSums_.clear();
  width_ = width;
  height_ = height;
  return true;
}

void RayPainter::Cover(int line, LinePart part, int first, int end) {
  Extend(pieces_[static_cast<std::size_t>(line)][part], first, end);
}

void RayPainter::TakeLine(Point from, Point to, int penWidth) {
  lines_ = {};
  const auto take = [&](LinePart part, int y, RowSpan span) {
    if (!downFirst_) {
      Extend(lines_, y, y + 1);
      Cover(y, part, span.left, span.right);
      return;
    }
    Extend(lines_, span.left, span.right);
    for (int x = span.left; x < span.right; ++x) Cover(x, part, y, y + 1);
  };
  WideLineSpans({from.x * kOversize, from.y * kOversize}, {to.x * kOversize, to.y * kOversize}, penWidth * kOversize,
                width_ * kOversize, height_ * kOversize, take);
}

// What the outputs of the first pass are where the ray covers their whole window.
const std::vector<std::uint8_t>& RayPainter::FullSums(int level) {
  std::vector<std::uint8_t>& full = fullSums_[level];
  if (!full.empty()) return full;
  const Contributions& windows = along_.windows;
  full.resize(static_cast<std::size_t>(windows.target));
  for (std::size_t c = 0; c < full.size(); ++c) {
    double sum = 0.0;
    for (int t = 0; t < windows.taps[c].count; ++t) sum += level * windows.taps[c].exact[t];
    full[c] = RoundSum(sum);
  }
  return full;
}

void RayPainter::SumAlong(int level) {
  const std::vector<std::uint8_t>& full = FullSums(level);
  const Contributions& windows = along_.windows;
  for (int line = lines_.left; line < lines_.right && !EndRequested(); ++line) {
    const auto at = static_cast<std::size_t>(line);
    Pieces merged;
    const int count = Merge(pieces_[at], merged);
    pieces_[at] = {};
    touched_[at] = {};
    if (!count) continue;
    const int first = merged[0].left, end = merged[static_cast<std::size_t>(count - 1)].right;
    const RowSpan outputs{along_.from[static_cast<std::size_t>(first)], along_.end[static_cast<std::size_t>(end)]};
    std::uint8_t* out = middle_.data() + at * static_cast<std::size_t>(windows.target);
    for (int c = outputs.left; c < outputs.right; ++c) {
      const int begin = windows.first[static_cast<std::size_t>(c)];
      const Taps& taps = windows.taps[static_cast<std::size_t>(c)];
      if (count == 1 && first <= begin && begin + taps.count <= end) {
        out[c] = full[static_cast<std::size_t>(c)];
        continue;
      }
      const double* sums = along_.sums.data() + along_.begin[static_cast<std::size_t>(c)];
      double part = 0.0;
      for (int i = 0; i < count; ++i) {
        const RowSpan& piece = merged[static_cast<std::size_t>(i)];
        const int start = std::clamp(piece.left - begin, 0, taps.count);
        part += sums[std::clamp(piece.right - begin, start, taps.count)] - sums[start];
      }
      const double quick = level * part;
      if (RoundsSurely(quick)) {
        out[c] = RoundSum(quick);
        continue;
      }
      double sum = 0.0;
      for (int i = 0; i < count; ++i) {
        const RowSpan& piece = merged[static_cast<std::size_t>(i)];
        const int stop = std::min(piece.right, begin + taps.count);
        for (int p = std::max(piece.left, begin); p < stop; ++p) sum += level * taps.exact[p - begin];
      }
      out[c] = RoundSum(sum);
    }
    touched_[at] = outputs;
  }
}

void RayPainter::SumAcrossAndBlend(const DibView& picture, Colour colour) {
  if (IsEmpty(lines_)) return;
  const auto length = static_cast<std::size_t>(along_.windows.target);
  const int end = across_.end[static_cast<std::size_t>(lines_.right)];
  for (int c = across_.from[static_cast<std::size_t>(lines_.left)]; c < end && !EndRequested(); ++c) {
    const Taps& taps = across_.windows.taps[static_cast<std::size_t>(c)];
    const int begin = across_.windows.first[static_cast<std::size_t>(c)];
    const int firstLine = std::max(begin, lines_.left), endLine = std::min(begin + taps.count, lines_.right);
    RowSpan range;
    for (int line = firstLine; line < endLine; ++line) {
      const RowSpan& touched = touched_[static_cast<std::size_t>(line)];
      if (!IsEmpty(touched)) Extend(range, touched.left, touched.right);
    }
    if (IsEmpty(range)) continue;
    std::fill(sums_.begin() + range.left, sums_.begin() + range.right, 0.0);
    for (int line = firstLine; line < endLine; ++line) {
      const RowSpan& touched = touched_[static_cast<std::size_t>(line)];
      AddWeighted(middle_.data() + static_cast<std::size_t>(line) * length + touched.left, taps.exact[line - begin],
                  touched.right - touched.left, sums_.data() + touched.left);
    }
    RoundSums(sums_.data() + range.left, range.right - range.left, weights_.data() + range.left);
    if (!downFirst_) {
      BlendColourMasked(picture.Row(c) + 3 * static_cast<std::size_t>(range.left), weights_.data() + range.left,
                        range.right - range.left, colour);
      continue;
    }
    for (int y = range.left; y < range.right; ++y) {
      BlendColour(picture.Row(y) + 3 * static_cast<std::size_t>(c), 1, colour, weights_[static_cast<std::size_t>(y)]);
    }
  }
}

void RayPainter::Paint(const DibView& picture, Point from, Point to, int penWidth, int level, Colour colour) {
  TakeLine(from, to, penWidth);
  SumAlong(level);
  SumAcrossAndBlend(picture, colour);
}

}  // namespace glyphmotion
