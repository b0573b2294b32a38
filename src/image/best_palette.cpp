// SPDX-License-Identifier: MIT
// The colours of a run become points: one for each colour or, if there are very many, one for the colours of a cell of
// 4 x 4 x 4, which has their mean and their number. Points in one cube of 8 x 8 x 8 are neighbours in the list.
//
//   1. All points are in one box. The box whose best cut reduces the squared error most is cut there, until there are
//      as many boxes as colours are wanted.
//   2. The means of the boxes are centres. Every point goes to its nearest centre, and every centre to the mean of its
//      points; a few rounds of this. A cube has few centres that are nearest to any of its points, and only those are
//      compared.
//
// All sums are integers and all comparisons are made in a fixed order, so the palette depends neither on the order of
// the pixels nor on the machine.
#include "image/best_palette.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include "image/colour_histogram.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kMaxColours = 256;
constexpr int kMostSinglePoints = 1 << 15;  // colours up to which each is a point
constexpr int kRounds = 4;

// The weights of red, green and blue in a squared distance, as for the nearest colour.
constexpr double kWeights[3] = {3, 4, 2};

struct Point {
  std::array<std::uint64_t, 3> sums;  // of the channels, over all pixels
  std::uint64_t pixels;
  std::array<float, 3> mean;
};

/// The points of one cube.
struct Group {
  std::size_t first, end;
  std::array<float, 3> low, high;
};

struct Points {
  std::vector<Point> all;
  std::vector<Group> groups;
};

// Adds the points of a cube: cells with `side` colours in each direction.
void AddPoints(const ColourHistogram& histogram, std::uint32_t cube, std::uint32_t side, std::vector<Point>& points) {
  const std::uint64_t red0 = cube >> 10 << 3, green0 = (cube >> 5 & 31) << 3, blue0 = (cube & 31) << 3;
  std::array<Point, 8> cells{};  // of 4 x 4 x 4
  for (std::uint32_t i = 0; i < kCubeColours; ++i) {
    const std::uint64_t n = histogram.PixelsAt(cube * kCubeColours + i);
    if (!n) continue;
    const std::uint64_t red = i >> 6, green = i >> 3 & 7, blue = i & 7;
    const Point point = {{n * (red0 + red), n * (green0 + green), n * (blue0 + blue)}, n, {}};
    if (side == 1) {
      points.push_back(point);
      continue;
    }
    Point& cell = cells[(red >> 2) << 2 | (green >> 2) << 1 | blue >> 2];
    cell.pixels += n;
    for (std::size_t c = 0; c < 3; ++c) cell.sums[c] += point.sums[c];
  }
  for (const Point& cell : cells)
    if (cell.pixels) points.push_back(cell);
}

Points PointsOf(const ColourHistogram& histogram) {
  Points points;
  const std::uint32_t side = histogram.Colours() <= kMostSinglePoints ? 1 : 4;
  for (std::uint32_t cube = 0; cube < kCubeCount; ++cube) {
    if (!histogram.Uses(cube)) continue;
    Group group{points.all.size(), 0, {256, 256, 256}, {0, 0, 0}};
    AddPoints(histogram, cube, side, points.all);
    group.end = points.all.size();
    for (std::size_t i = group.first; i < group.end; ++i) {
      Point& point = points.all[i];
      for (std::size_t c = 0; c < 3; ++c) {
        point.mean[c] = static_cast<float>(static_cast<double>(point.sums[c]) / static_cast<double>(point.pixels));
        group.low[c] = std::min(group.low[c], point.mean[c]);
        group.high[c] = std::max(group.high[c], point.mean[c]);
      }
    }
    if (group.first < group.end) points.groups.push_back(group);
  }
  return points;
}

// ---- Boxes ----

struct Sums {
  std::uint64_t pixels = 0;
  std::array<std::uint64_t, 3> channels{};

  void Add(std::uint64_t n, const std::array<std::uint64_t, 3>& sums) {
    pixels += n;
    for (std::size_t c = 0; c < 3; ++c) channels[c] += sums[c];
  }
};

struct Box {
  std::size_t first = 0, end = 0;
  double gain = 0;  // by which the best cut reduces the squared error; 0: it cannot be cut
  std::size_t axis = 0;
  int cut = 0;  // points whose mean is below go to the left
};

using Bins = std::array<std::array<Sums, 256>, 3>;

// The reduction of the squared error when `all` is divided into `left` and the rest.
double GainOf(const Sums& left, const Sums& all) {
  const auto n = static_cast<double>(left.pixels), m = static_cast<double>(all.pixels - left.pixels);
  double gain = 0;
  for (std::size_t c = 0; c < 3; ++c) {
    const double distance =
        static_cast<double>(left.channels[c]) / n - static_cast<double>(all.channels[c] - left.channels[c]) / m;
    gain += kWeights[c] * distance * distance;
  }
  return gain * (n / (n + m)) * m;
}

void FindCut(std::span<const Point> points, Bins& bins, Box& box) {
  for (auto& axis : bins) axis.fill({});
  Sums all;
  for (const Point& point : points) {
    all.Add(point.pixels, point.sums);
    for (std::size_t c = 0; c < 3; ++c) bins[c][static_cast<std::size_t>(point.mean[c])].Add(point.pixels, point.sums);
  }
  box.gain = 0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Sums left;
    for (int value = 0; value < 255; ++value) {
      const Sums& bin = bins[axis][static_cast<std::size_t>(value)];
      if (!bin.pixels) continue;
      left.Add(bin.pixels, bin.channels);
      if (left.pixels == all.pixels) break;
      const double gain = GainOf(left, all);
      if (gain > box.gain) {
        box.gain = gain;
        box.axis = axis;
        box.cut = value + 1;
      }
    }
  }
}

// ---- Centres ----

/// Channels in separate arrays, for the vector loops.
struct Centres {
  std::size_t count = 0;
  std::array<std::array<float, kMaxColours>, 3> at;
  std::array<Sums, kMaxColours> sums;

  void Add(const Sums& of) {
    sums[count++] = of;
    Move(count - 1);
  }
  // To the mean of the centre's points; one without points stays.
  void Move(std::size_t i) {
    for (std::size_t c = 0; sums[i].pixels && c < 3; ++c)
      at[c][i] = static_cast<float>(static_cast<double>(sums[i].channels[c]) / static_cast<double>(sums[i].pixels));
  }
};

// Cuts boxes until there are `wanted`. Reorders the points.
void CutBoxes(std::vector<Point> points, std::size_t wanted, Centres& centres) {
  const auto bins = std::make_unique<Bins>();
  const std::span<Point> all(points);
  std::vector<Box> boxes = {{0, points.size()}};
  FindCut(all, *bins, boxes[0]);
  while (boxes.size() < wanted && !EndRequested()) {
    Box& box = *std::max_element(boxes.begin(), boxes.end(), [](auto& a, auto& b) { return a.gain < b.gain; });
    if (box.gain <= 0) break;
    const auto inside = all.subspan(box.first, box.end - box.first);
    const auto right = std::partition(inside.begin(), inside.end(), [&](const Point& point) {
      return point.mean[box.axis] < static_cast<float>(box.cut);
    });
    Box other = {box.first + static_cast<std::size_t>(right - inside.begin()), box.end};
    box.end = other.first;
    for (Box* half : {&box, &other}) FindCut(all.subspan(half->first, half->end - half->first), *bins, *half);
    boxes.push_back(other);
  }
  for (const Box& box : boxes) {
    Sums sums;
    for (const Point& point : all.subspan(box.first, box.end - box.first)) sums.Add(point.pixels, point.sums);
    centres.Add(sums);
  }
}

/// The centres that may be nearest to a point of one group.
struct Candidates {
  std::size_t count = 0;
  std::array<std::uint8_t, kMaxColours> index;
  std::array<std::array<float, kMaxColours>, 3> at;
};

constexpr float kRed = 3, kGreen = 4, kBlue = 2;

// A centre is dropped when the one nearest to the middle of the group is nearer to each corner of its box.
GLYPHMOTION_CLONES void FindCandidates(const Centres& centres, const Group& group, Candidates& found) {
  std::array<float, kMaxColours> distance;
  const std::size_t n = centres.count;
  const float *reds = centres.at[0].data(), *greens = centres.at[1].data(), *blues = centres.at[2].data();
  const float red = (group.low[0] + group.high[0]) / 2, green = (group.low[1] + group.high[1]) / 2,
              blue = (group.low[2] + group.high[2]) / 2;
  for (std::size_t i = 0; i < n; ++i) {
    const float dr = reds[i] - red, dg = greens[i] - green, db = blues[i] - blue;
    distance[i] = kRed * dr * dr + kGreen * dg * dg + kBlue * db * db;
  }
  const auto best = static_cast<std::size_t>(
      std::min_element(distance.begin(), distance.begin() + static_cast<std::ptrdiff_t>(n)) - distance.begin());
  // The greatest excess, over an interval, of the squared distance to the best centre over that to another.
  const auto excess = [](float a, float b, float low, float high) {
    return (a - b) * (a + b - 2 * (a > b ? low : high));
  };
  const float bestRed = reds[best], bestGreen = greens[best], bestBlue = blues[best];
  for (std::size_t i = 0; i < n; ++i) {
    distance[i] = kRed * excess(bestRed, reds[i], group.low[0], group.high[0]) +
                  kGreen * excess(bestGreen, greens[i], group.low[1], group.high[1]) +
                  kBlue * excess(bestBlue, blues[i], group.low[2], group.high[2]);
  }
  found.count = 0;
  for (std::size_t i = 0; i < n; ++i) {
    // A little below 0, for rounding.
    if (distance[i] < -0.01F && i != best) continue;
    found.index[found.count] = static_cast<std::uint8_t>(i);
    for (std::size_t c = 0; c < 3; ++c) found.at[c][found.count] = centres.at[c][i];
    ++found.count;
  }
}

std::size_t Nearest(const Candidates& among, const std::array<float, 3>& mean) {
  std::size_t best = 0;
  float least = HUGE_VALF;
  for (std::size_t i = 0; i < among.count; ++i) {
    const float dr = among.at[0][i] - mean[0], dg = among.at[1][i] - mean[1], db = among.at[2][i] - mean[2];
    const float distance = kRed * dr * dr + kGreen * dg * dg + kBlue * db * db;
    if (distance >= least) continue;
    least = distance;
    best = i;
  }
  return among.index[best];
}

// One round: every point to its nearest centre, every centre to the mean of its points.
void Improve(const Points& points, Centres& centres) {
  Candidates candidates;
  std::array<Sums, kMaxColours> sums{};
  for (const Group& group : points.groups) {
    FindCandidates(centres, group, candidates);
    for (std::size_t i = group.first; i < group.end; ++i) {
      const Point& point = points.all[i];
      sums[candidates.count > 1 ? Nearest(candidates, point.mean) : candidates.index[0]].Add(point.pixels, point.sums);
    }
  }
  centres.sums = sums;
  for (std::size_t i = 0; i < centres.count; ++i) centres.Move(i);
}

// The centres' colours, each once.
int WriteColours(const Centres& centres, Palette& palette) {
  std::size_t written = 0;
  for (std::size_t i = 0; i < centres.count; ++i) {
    const Sums& sums = centres.sums[i];
    if (!sums.pixels) continue;
    const auto mean = [&](std::size_t c) {
      return static_cast<std::uint8_t>((sums.pixels + 2 * sums.channels[c]) / (2 * sums.pixels));
    };
    const Rgb colour = {mean(0), mean(1), mean(2)};
    const auto end = palette.begin() + static_cast<std::ptrdiff_t>(written);
    if (std::find(palette.begin(), end, colour) == end) palette[written++] = colour;
  }
  return static_cast<int>(written);
}

}  // namespace

bool BestPalette(const FrameList& frames, std::optional<Rgb> without, int& count, Palette& palette) noexcept try {
  palette = {};
  if (count < 1 || count > kMaxColours) count = kMaxColours;
  Points points;
  {
    const auto histogram = std::make_unique<ColourHistogram>();
    if (!histogram->Count(frames)) return false;
    if (without) histogram->Drop(*without);
    points = PointsOf(*histogram);
  }
  const auto centres = std::make_unique<Centres>();
  if (points.all.empty()) {
    count = 0;
    return true;
  }
  CutBoxes(points.all, static_cast<std::size_t>(count), *centres);
  for (int round = 0; round < kRounds && !EndRequested(); ++round) Improve(points, *centres);
  count = WriteColours(*centres, palette);
  return !EndRequested();
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace glyphmotion
