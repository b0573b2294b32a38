// SPDX-License-Identifier: MIT
// The ellipses are symmetric in both directions but for the innermost, which is one pixel above and to the left of the
// centre (PatchCentre). So a quarter of the large picture is drawn, in bytes. A reduced pixel
// and its mirror image are the same sum in another order, which may differ where it is close to half a level; that is
// rare, and then both are summed exactly (SumMirrored). The first pass reduces the columns of the left half, the second
// the rows of the upper half and those of the lower half that are not the same.
#include "effects/gumdrop_image.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/angles.h"
#include "image/resample_windows.h"
#include "image/surface.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kOversize = 4;

// The level of ring i of `rings`, counted from the rim.
std::uint8_t RingLevel(int i, int rings, int strength) {
  const double c = std::cos(Radians(static_cast<double>(i) / rings * 90));
  const double k = c * (static_cast<double>(i + 1) / rings) * 0.9;
  return static_cast<std::uint8_t>(std::clamp(static_cast<int>(k * strength) + strength, 0, 255));
}

// The upper left quarter of the large picture.
class Quarter {
 public:
  Quarter(int diameter, int strength, bool bevel)
      : half_(diameter * kOversize / 2),
        pixels_(static_cast<std::size_t>(half_) * static_cast<std::size_t>(half_)),
        spans_(2 * static_cast<std::size_t>(half_)),
        painted_(static_cast<std::size_t>(half_), half_) {
    if (!bevel) {
      Paint(0, centre_ = static_cast<std::uint8_t>(strength));
      return;
    }
    std::vector<std::uint8_t> levels;
    for (int i = 0; i < half_; ++i) levels.push_back(RingLevel(i, half_, strength));
    centre_ = levels.back();
    // Ring lies in ring, one pixel further in on all sides. Of rings of one level the outermost is enough.
    for (int i = half_ - 2; i >= 0 && !EndRequested(); --i) {
      const auto at = static_cast<std::size_t>(i);
      if (i == 0 || levels[at] != levels[at - 1]) Paint(i, levels[at]);
    }
  }

  int Half() const { return half_; }
  /// What the pixel at (Half() - 1, Half() - 1) really has; its rows here have what its mirror images have.
  std::uint8_t Centre() const { return centre_; }
  /// Row y of the whole picture, its left half.
  const std::uint8_t* Row(int y) const {
    return pixels_.data() +
           static_cast<std::size_t>(y < half_ ? y : 2 * half_ - 1 - y) * static_cast<std::size_t>(half_);
  }
  /// The first column with a pixel in rows from 0 to y, both included, for y below Half().
  bool IsBlank(int y, int column) const { return column < painted_[static_cast<std::size_t>(y)]; }

 private:
  // Around what has been painted.
  void Paint(int inset, std::uint8_t level) {
    const int side = 2 * half_;
    EllipseRows({inset, inset, side - inset, side - inset}, side, spans_);
    for (int y = inset; y < half_; ++y) {
      const RowSpan span = spans_[static_cast<std::size_t>(y)];
      int& painted = painted_[static_cast<std::size_t>(y)];
      if (span.left >= span.right || span.left >= painted) continue;
      std::uint8_t* row = pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(half_);
      std::fill(row + span.left, row + painted, level);
      painted = span.left;
    }
  }

  int half_;
  std::uint8_t centre_ = 0;
  std::vector<std::uint8_t> pixels_;
  std::vector<RowSpan> spans_;
  std::vector<int> painted_;  // by row: from here on
};

// kLanes lines side by side, as SumToBytes takes them.
class Strip {
 public:
  explicit Strip(int length) : samples_(ScratchArray<float>(static_cast<std::size_t>(length + kTapGroup) * kLanes)) {}
  explicit operator bool() const { return static_cast<bool>(samples_); }
  float* At(int position) { return samples_.get() + static_cast<std::ptrdiff_t>(position) * kLanes; }

 private:
  Scratch<float> samples_;
};

struct Both {
  std::uint8_t here[kLanes], mirrored[kLanes];
};

// Output c of the strip's lines, and its mirror image.
void Sum(Strip& strip, const Contributions& list, int c, Both& out) {
  const auto at = static_cast<std::size_t>(c), mirror = static_cast<std::size_t>(list.target - 1 - c);
  SumMirrored(strip.At(list.first[at]), kLanes, list.taps[at], list.taps[mirror], out.here, out.mirrored);
}

// How far the windows of the first half of the outputs reach.
int ReachOf(const Contributions& list) {
  const auto last = static_cast<std::size_t>((list.target - 1) / 2);
  return list.first[last] + list.taps[last].count;
}

// Reduces the columns: `middle` gets list.target rows of quarter.Half() bytes.
bool ReduceColumns(const Quarter& quarter, const Contributions& list, std::vector<std::uint8_t>& middle) {
  const int half = quarter.Half(), reach = ReachOf(list);
  const auto width = static_cast<std::size_t>(half);
  middle.assign(width * static_cast<std::size_t>(list.target), 0);
  Strip strip(reach);
  if (!strip) return false;
  for (int x = 0; x < half; x += kLanes) {
    if (EndRequested()) return false;
    const auto columns = static_cast<std::size_t>(std::min(kLanes, half - x));
    int blank = 0;  // rows above the first that is not
    while (blank < half && quarter.IsBlank(blank, x + static_cast<int>(columns) - 1)) ++blank;
    for (int y = 0; y < reach; ++y) WidenBytes(quarter.Row(y) + x, columns, strip.At(y));
    for (int c = 0; 2 * c < list.target; ++c) {
      const auto at = static_cast<std::size_t>(c);
      if (list.first[at] + list.taps[at].count <= blank) continue;
      Both out;
      Sum(strip, list, c, out);
      std::memcpy(&middle[width * at + static_cast<std::size_t>(x)], out.here, columns);
      std::memcpy(&middle[width * static_cast<std::size_t>(list.target - 1 - c) + static_cast<std::size_t>(x)],
                  out.mirrored, columns);
    }
  }
  return true;
}

class RowReduction {
 public:
  RowReduction(const std::vector<std::uint8_t>& middle, int half, const Contributions& list, DropImage& image)
      : middle_(middle), half_(half), list_(list), image_(image), reach_(ReachOf(list)), strip_(reach_) {}

  bool Run() {
    const int side = list_.target;
    if (!strip_) return false;
    std::vector<int> rows, copies;
    for (int y = 0; y < side; ++y) {
      const bool copy =
          2 * y >= side && std::memcmp(RowOf(y), RowOf(side - 1 - y), static_cast<std::size_t>(half_)) == 0;
      (copy ? copies : rows).push_back(y);
    }
    for (std::size_t first = 0; first < rows.size(); first += kLanes) {
      if (EndRequested()) return false;
      Reduce(std::span(rows).subspan(first, std::min<std::size_t>(kLanes, rows.size() - first)));
    }
    for (const int y : copies) std::memcpy(OutputOf(y), OutputOf(side - 1 - y), static_cast<std::size_t>(side));
    return true;
  }

 private:
  const std::uint8_t* RowOf(int y) const {
    return middle_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(half_);
  }
  std::uint8_t* OutputOf(int y) {
    return image_.weights.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(list_.target);
  }

  void Reduce(std::span<const int> rows) {
    constexpr int kTile = 32;  // positions transposed at a time, so that a tile fits the L1 cache
    for (int begin = 0; begin < reach_; begin += kTile) {
      const int end = std::min(begin + kTile, reach_);
      for (std::size_t l = 0; l < rows.size(); ++l) {
        const std::uint8_t* row = RowOf(rows[l]);
        for (int x = begin; x < end; ++x) strip_.At(x)[l] = static_cast<float>(row[x < half_ ? x : 2 * half_ - 1 - x]);
      }
    }
    for (int c = 0; 2 * c < list_.target; ++c) {
      Both out;
      Sum(strip_, list_, c, out);
      for (std::size_t l = 0; l < rows.size(); ++l) {
        OutputOf(rows[l])[c] = out.here[l];
        OutputOf(rows[l])[list_.target - 1 - c] = out.mirrored[l];
      }
    }
  }

  const std::vector<std::uint8_t>& middle_;
  int half_;
  const Contributions& list_;
  DropImage& image_;
  int reach_;
  Strip strip_;
};

template <typename Sample>
std::uint8_t ExactSum(const Contributions& list, int c, Sample sample) {
  const Taps& taps = list.taps[static_cast<std::size_t>(c)];
  const int first = list.first[static_cast<std::size_t>(c)];
  double sum = 0.0;
  for (int t = 0; t < taps.count; ++t) sum += static_cast<double>(sample(first + t)) * taps.exact[t];
  return static_cast<std::uint8_t>(std::clamp(sum, 0.0, 255.0) + 0.5);
}

// Recomputes what depends on the one pixel that has no mirror image.
void PatchCentre(const Quarter& quarter, const Contributions& list, const std::vector<std::uint8_t>& middle,
                 DropImage& image) {
  const int half = quarter.Half(), centre = half - 1;
  if (quarter.Centre() == quarter.Row(centre)[centre]) return;
  const auto sees = [&](int c) {
    const auto at = static_cast<std::size_t>(c);
    return list.first[at] <= centre && centre < list.first[at] + list.taps[at].count;
  };
  for (int y = 0; y < list.target; ++y) {
    if (!sees(y)) continue;
    const std::uint8_t* row = middle.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(half);
    const std::uint8_t level =
        ExactSum(list, y, [&](int at) { return at == centre ? quarter.Centre() : quarter.Row(at)[centre]; });
    for (int x = 0; x < list.target && level != row[centre]; ++x) {
      if (!sees(x)) continue;
      image.weights[static_cast<std::size_t>(y) * static_cast<std::size_t>(list.target) + static_cast<std::size_t>(x)] =
          ExactSum(list, x, [&](int at) { return at == centre ? level : row[at < half ? at : 2 * half - 1 - at]; });
    }
  }
}

}  // namespace

bool DrawGumdrop(int diameter, int strength, bool bevel, DropImage& image) {
  Contributions list;
  if (!FindContributions(kOversize * diameter, diameter, kResampleFilters[kLanczosFilter], list)) return false;
  image.side = diameter;
  image.weights.resize(static_cast<std::size_t>(diameter) * static_cast<std::size_t>(diameter));
  std::vector<std::uint8_t> middle;
  const Quarter quarter(diameter, strength, bevel);
  if (!ReduceColumns(quarter, list, middle) || !RowReduction(middle, quarter.Half(), list, image).Run()) return false;
  PatchCentre(quarter, list, middle, image);
  return true;
}

}  // namespace glyphmotion
