// SPDX-License-Identifier: MIT
#include "materials/surface_texture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <vector>

#include "materials/fractal_texture.h"
#include "platform/random.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr double kRandomMax = 32767.0;
constexpr float kSmallest = 1.1920929e-7f;

double RandomUnit() { return NextRandom() / kRandomMax; }

// Truncates to a 32-bit number; keeps the low bits if it does not fit.
std::int32_t Truncate(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value) : INT32_MIN;
}

// Craters -------------------------------------------------------------------------------------------------------------

// More impacts than this make no visible difference, and a malformed record may request billions.
constexpr std::uint32_t kMostCraters = 1000000;

// A surface of which some rows are kept: those from `first` on, `end` excluded.
class HeightField {
 public:
  HeightField(int width, int height, int first, int end)
      : width_(width),
        height_(height),
        first_(first),
        end_(end),
        heights_(static_cast<std::size_t>(width) * static_cast<std::size_t>(end - first), 32767) {}
  int Width() const { return width_; }
  int First() const { return first_; }
  int End() const { return end_; }
  std::uint16_t* Row(int y) {
    return heights_.data() + static_cast<std::size_t>(y - first_) * static_cast<std::size_t>(width_);
  }

  // The mean of the square of side 2 * reach + 1 around a position, clipped to the field.
  int Mean(int x, int y, int reach) {
    const int left = std::max(x - reach, 0), right = std::min(x + reach, width_ - 1);
    const int top = std::max(y - reach, 0), bottom = std::min(y + reach, height_ - 1);
    std::uint32_t sum = 0;
    for (int yy = top; yy <= bottom; ++yy) {
      const std::uint16_t* row = Row(yy);
      for (int xx = left; xx <= right; ++xx) sum += row[xx];
    }
    return static_cast<int>(sum / static_cast<std::uint32_t>((right - left + 1) * (bottom - top + 1)));
  }

 private:
  int width_, height_, first_, end_;
  std::vector<std::uint16_t> heights_;
};

// The profile of large craters of one radius: at each position of the stamp, the height above the level of the impact
// and the weight of the old surface. Both depend only on the distance from the centre.
struct CraterStamp {
  int side;
  std::vector<double> profile, keep;
};

CraterStamp MakeStamp(int radius, double depth) {
  const double r = radius;
  const int side = 2 * radius + 1;
  const auto places = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
  CraterStamp stamp{side, std::vector<double>(places), std::vector<double>(places)};
  const double scale = std::pow(r, depth);
  std::size_t at = 0;
  for (int v = radius; v >= -radius; --v) {
    for (int u = radius; u >= -radius; --u, ++at) {
      const double dy = v / r, dx = u / r, d2 = dx * dx + dy * dy, q = 2.25 * d2;
      double p = std::max(std::sqrt(0.5) - std::sqrt(std::fabs(1.0 - q)), q > 1.0 ? 0.0 : -10.0);
      p = p * scale;
      if (u == 0 && v == 0 && Truncate(p) == 0) p = p < 0.0 ? -1.0 : 1.0;
      stamp.profile[at] = p;
      stamp.keep[at] = (1.0 / (1.0 - std::min(0.9, d2)) / 10.000000000000002 - 0.09999999999999998) / 0.9;
    }
  }
  return stamp;
}

void StampLargeCrater(HeightField& field, int x, int y, int radius, double level, const CraterStamp& stamp) {
  const int top = std::max(y - radius, field.First()), bottom = std::min(field.End() - 1, y + radius);
  const int left = std::max(x - radius, 0), right = std::min(field.Width() - 1, x + radius);
  for (int yy = top; yy <= bottom; ++yy) {
    std::uint16_t* row = field.Row(yy);
    const auto start = static_cast<std::size_t>(yy - y + radius) * static_cast<std::size_t>(stamp.side);
    for (int xx = left; xx <= right; ++xx) {
      const std::size_t at = start + static_cast<std::size_t>(xx - x + radius);
      const double p = stamp.profile[at], w = stamp.keep[at];
      const auto height = static_cast<std::uint16_t>(Truncate((level + p) * (1.0 - w) + (row[xx] + p) * w));
      row[xx] = std::clamp<std::uint16_t>(height, 1000, 64000);
    }
  }
}

struct Impact {
  int x, y;
  int radius;           // 0: a single place
  int noise;            // added there
  int levelReach = 1;   // the mean so far around (x, y) is the level of the impact
  bool counts = false;  // it can be seen, or something that can depends on it
};

std::vector<Impact> DrawImpacts(int width, int height, std::uint32_t craters) {
  std::vector<Impact> impacts;
  for (std::uint32_t i = 0; i < craters && !EndRequested(); ++i) {
    Impact impact{};
    impact.x = static_cast<int>((width - 1.0) * RandomUnit());
    impact.y = static_cast<int>((height - 1.0) * RandomUnit());
    const double r = std::sqrt(1.0 / ((1.0 - 0.9999 * RandomUnit()) * std::numbers::pi));
    if (r < 3.0) {
      impact.noise = r >= 1.0 ? ((NextRandom() >> 8) & 3) - 1 : 0;
    } else {
      impact.radius = static_cast<int>(std::max(2.0, r));
      impact.levelReach = static_cast<int>(std::max(2.0, r / 3.0));
    }
    impacts.push_back(impact);
  }
  return impacts;
}

// The rows that the window's rows depend on: an impact that changes such a row reads those around its place. Marks
// these impacts.
HeightField FieldFor(const TextureWindow& window, std::vector<Impact>& impacts) {
  int first = window.shown.top, end = window.shown.bottom;
  for (auto impact = impacts.rbegin(); impact != impacts.rend(); ++impact) {
    if (impact->y + impact->radius < first || impact->y - impact->radius >= end) continue;
    impact->counts = true;
    first = std::min(first, std::max(impact->y - impact->levelReach, 0));
    end = std::max(end, std::min(impact->y + impact->levelReach + 1, window.height));
  }
  return {window.width, window.height, first, end};
}

void HitSurface(HeightField& field, const std::vector<Impact>& impacts, double depth) {
  std::map<int, CraterStamp> stamps;
  for (const Impact& impact : impacts) {
    if (EndRequested()) return;
    if (!impact.counts) continue;
    const int level = field.Mean(impact.x, impact.y, impact.levelReach);
    if (impact.radius == 0) {
      field.Row(impact.y)[impact.x] = static_cast<std::uint16_t>(level + impact.noise);
      continue;
    }
    auto stamp = stamps.find(impact.radius);
    if (stamp == stamps.end()) stamp = stamps.emplace(impact.radius, MakeStamp(impact.radius, depth)).first;
    StampLargeCrater(field, impact.x, impact.y, impact.radius, level, stamp->second);
  }
}

constexpr int kSteepest = 52;

// Opacity of the foreground by slope, from -52 to 52.
std::array<std::uint8_t, 2 * kSteepest + 1> ShadingTable() {
  std::array<std::uint8_t, 2 * kSteepest + 1> table{};
  for (int s = -kSteepest; s <= kSteepest; ++s) {
    const double a = s * std::numbers::pi / 2.0;
    const double level =
        s < 1 ? 128.0 - std::pow(std::sin(a / -52.0), 0.5) * 127.0 : std::pow(std::sin(a / 52.0), 0.5) * 127.0 + 128.0;
    table[static_cast<std::size_t>(s + kSteepest)] = static_cast<std::uint8_t>(level);
  }
  return table;
}

void PutColour(std::uint8_t* to, Colour colour) {
  to[0] = static_cast<std::uint8_t>(BlueOf(colour));
  to[1] = static_cast<std::uint8_t>(GreenOf(colour));
  to[2] = static_cast<std::uint8_t>(RedOf(colour));
}

// Perturbation --------------------------------------------------------------------------------------------------------

constexpr int kLattice = 16, kOctaves = 8;

// Gradients of the lattice and a table that is deliberately not a true permutation, each repeated past its end. Built
// once per run, from the first texture's seed: later textures use the same noise.
struct NoiseTables {
  bool built = false;
  std::array<float, kLattice + 18> sine{}, cosine{};
  std::array<int, kLattice + 18> permutation{};
};
NoiseTables& RunNoise() { return CurrentRun().Member<NoiseTables>(); }

void BuildNoise(NoiseTables& noise, std::uint32_t seed) {
  SeedRandom(seed);
  for (std::size_t i = 0; i < kLattice; ++i) {
    const auto a = static_cast<float>(NextRandom() * double{2 * std::numbers::pi_v<float>} / 32767.0);
    noise.sine[i] = static_cast<float>(std::sin(static_cast<double>(a)));
    noise.cosine[i] = static_cast<float>(std::cos(static_cast<double>(a)));
    noise.permutation[i] = static_cast<int>(i);
  }
  noise.permutation[kLattice] = 0;
  // The first swap moves the 0 past the end into the table; the value that it replaces is lost.
  for (std::size_t i = kLattice; i > 0; i -= 2) {
    std::swap(noise.permutation[i], noise.permutation[static_cast<std::size_t>(NextRandom() & 15)]);
  }
  for (std::size_t i = 0; i < 18; ++i) {
    noise.sine[kLattice + i] = noise.sine[i];
    noise.cosine[kLattice + i] = noise.cosine[i];
    noise.permutation[kLattice + i] = noise.permutation[i];
  }
  noise.built = true;
}

// A coordinate's position in the lattice: its two neighbours, the distances from them and the blend weight.
struct LatticePlace {
  int b0, b1;
  float r0, r1, s;
};
LatticePlace PlaceOf(float v) {
  const float t = v + 10000.0f;
  const int whole = static_cast<int>(t), b0 = whole & 15;
  const float r0 = t - static_cast<float>(whole);
  return {b0, (b0 + 1) & 15, r0, r0 - 1.0f, (3.0f - 2.0f * r0) * r0 * r0};
}

// The right-hand corners use the cosine for both components, which gives the texture its grain.
float Noise(const NoiseTables& noise, const LatticePlace& x, const LatticePlace& y) {
  const auto at = [](int i) { return static_cast<std::size_t>(i); };
  const auto& p = noise.permutation;
  const int i = p[at(x.b0)], j = p[at(x.b1)];
  const std::size_t b00 = at(p[at(y.b0 + i)]), b10 = at(p[at(y.b0 + j)]), b01 = at(p[at(y.b1 + i)]),
                    b11 = at(p[at(y.b1 + j)]);
  const float u0 = y.r0 * noise.cosine[b00] + x.r0 * noise.sine[b00];
  const float v0 = noise.cosine[b10] * y.r0 + noise.cosine[b10] * x.r1;
  const float a = (v0 - u0) * x.s + u0;
  const float u1 = y.r1 * noise.cosine[b01] + x.r0 * noise.sine[b01];
  const float v1 = noise.cosine[b11] * y.r1 + noise.cosine[b11] * x.r1;
  const float b = (v1 - u1) * x.s + u1;
  return ((b - a) * y.s + a) * 1.5f;
}

// The octaves to sum: whole ones, then a fraction of one more.
struct Octaves {
  int count = 0;
  std::array<float, kOctaves> part{}, weight{};
};
Octaves OctavesOf(std::uint32_t matrix) {
  float o = (static_cast<float>(static_cast<std::int32_t>(matrix)) - 32.0f) / 992.0f * 8.0f + kSmallest;
  if (o < 0.0f || o > 8.0f) o = 8.0f;
  Octaves octaves;
  const auto add = [&](float part) {
    const auto k = static_cast<std::size_t>(octaves.count++);
    octaves.part[k] = part;
    octaves.weight[k] = static_cast<float>(std::pow(2.0, -static_cast<double>(k) / 2.0));
  };
  const auto whole = static_cast<int>(o);
  const float rest = o - static_cast<float>(whole);
  while (octaves.count < whole) add(1.0f);
  if (rest > kSmallest && octaves.count < kOctaves) add(rest);
  return octaves;
}

// The four values, clamped, with one more control point at each end.
std::array<float, 6> CurvePoints(const float (&given)[4]) {
  float c[4];
  // Written so that NaN becomes 0.
  for (int i = 0; i < 4; ++i) c[i] = given[i] > 0.0f ? std::min(given[i], 1.0f) : 0.0f;
  return {2.0f * c[0] - c[1], c[0], c[1], c[2], c[3], 2.0f * c[3] - c[2]};
}

// One channel's Catmull-Rom spline through four values.
double CurveAt(const std::array<float, 6>& points, double t) {
  t = std::clamp(t, 0.0, 1.0) * 3.0;
  const auto k = static_cast<std::size_t>(std::min(static_cast<int>(t), 2));
  const double f = t - static_cast<double>(k), p0 = points[k], p1 = points[k + 1], p2 = points[k + 2],
               p3 = points[k + 3];
  const double cubic = static_cast<double>(static_cast<float>(1.5 * p1 - 0.5 * p0 - 1.5 * p2 + 0.5 * p3));
  const double square = static_cast<double>(static_cast<float>(p0 - 2.5 * p1 + 2.0 * p2 - 0.5 * p3));
  const double linear = static_cast<double>(static_cast<float>(0.5 * p2 - 0.5 * p0));
  return ((cubic * f + square) * f + linear) * f + p1;
}

using ColourTable = std::array<std::array<std::uint8_t, 3>, 256>;

void FillChannel(ColourTable& table, std::size_t channel, const float (&given)[4]) {
  const std::array<float, 6> points = CurvePoints(given);
  for (std::size_t i = 0; i < 256; ++i) {
    table[i][channel] =
        static_cast<std::uint8_t>(std::clamp(CurveAt(points, static_cast<double>(i) / 255.0) * 255.0, 0.0, 255.0));
  }
}

// Blue, green, red, as pixels are stored.
ColourTable MakeColourTable(const TextureSpec& parameters) {
  float red[4], green[4], blue[4];
  for (int i = 0; i < 4; ++i) {
    red[i] = parameters.ColorRed[i];
    green[i] = parameters.ColorGreen[i];
    blue[i] = parameters.ColorBlue[i];
  }
  ColourTable table{};
  FillChannel(table, 0, blue);
  FillChannel(table, 1, green);
  FillChannel(table, 2, red);
  return table;
}

// What a bubble adds at each place of its disc, row by row; all bubbles of a texture are alike.
struct BubbleStamp {
  int radius = 0;
  std::vector<int> reach;     // by row: columns from -reach to reach, the radius excluded on the right
  std::vector<float> values;  // side x side: the addend or, of kSphere, the squared distance

  std::size_t Side() const { return 2 * static_cast<std::size_t>(radius); }
  /// The value of column dx in row dy, both from -radius on.
  const float* At(int dy, int dx) const {
    return values.data() + static_cast<std::size_t>(dy + radius) * Side() + (dx + radius);
  }
};

enum BubbleShape : std::uint32_t { kDisc = 0, kHill = 1, kPeak = 2, kSphere = 3 };

float BubbleValue(std::uint32_t shape, float d2, float r2) {
  if (shape == kDisc) return 1.0f;
  if (shape == kHill) return 1.0f / (2.0f * d2 / r2 + 1.0f);
  if (shape == kPeak) return 1.0f / (16.0f * d2 / r2 + 0.1f);
  return d2;
}

BubbleStamp MakeBubble(std::uint32_t shape, int radius) {
  BubbleStamp stamp;
  stamp.radius = radius;
  stamp.reach.resize(stamp.Side());
  stamp.values.resize(stamp.Side() * stamp.Side());
  const std::int64_t r2 = std::int64_t{radius} * radius;
  for (int dy = -radius; dy < radius && !EndRequested(); ++dy) {
    float* row = stamp.values.data() + static_cast<std::size_t>(dy + radius) * stamp.Side();
    for (int dx = -radius; dx < radius; ++dx) {
      const std::int64_t d2 = std::int64_t{dx} * dx + std::int64_t{dy} * dy;
      if (d2 > r2) continue;
      row[dx + radius] = BubbleValue(shape, static_cast<float>(d2), static_cast<float>(r2));
      stamp.reach[static_cast<std::size_t>(dy + radius)] =
          std::max(stamp.reach[static_cast<std::size_t>(dy + radius)], std::abs(dx));
    }
  }
  return stamp;
}

GLYPHMOTION_CLONES void Raise(float* __restrict row, const float* __restrict values, int count) {
  for (int i = 0; i < count; ++i) row[i] += values[i];
}
GLYPHMOTION_CLONES void Bulge(float* __restrict row, const float* __restrict squares, float r2, int count) {
  for (int i = 0; i < count; ++i) row[i] = (1.0f - row[i]) * squares[i] / r2 + row[i];
}

// The window's part of the map.
std::vector<float> BubbleMap(const TextureSpec& parameters, const TextureWindow& window, int bubbles) {
  const int width = window.width, height = window.height;
  const Rect& shown = window.shown;
  std::vector<float> map(static_cast<std::size_t>(shown.Width()) * static_cast<std::size_t>(shown.Height()));
  const int radius = std::min({height / 2, width / 2, std::max(static_cast<std::int32_t>(parameters.BubbleSize), 1)});
  const std::uint32_t shape = parameters.BubbleShape;
  SeedRandom(parameters.SeedValue[0]);
  const BubbleStamp stamp = MakeBubble(shape, shape <= kSphere ? radius : 0);
  const auto r2 = static_cast<float>(std::int64_t{radius} * radius);
  for (int i = 0; i < bubbles && !EndRequested(); ++i) {
    const int cx = NextRandom() % width + width, cy = NextRandom() % height + height;
    for (int dy = -stamp.radius; dy < stamp.radius && !EndRequested(); ++dy) {
      const int y = (cy + dy) % height - shown.top;
      if (y < 0 || y >= shown.Height()) continue;
      float* row = map.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(shown.Width());
      const int reach = stamp.reach[static_cast<std::size_t>(dy + radius)];
      // In pieces, since what leaves on one side enters on the other.
      for (int dx = -reach, end = std::min(reach + 1, radius), count = 0; dx < end; dx += count) {
        const int x = (cx + dx) % width;
        count = std::min(end - dx, width - x);
        const int left = std::max(x, shown.left), right = std::min(x + count, shown.right);
        if (left >= right) continue;
        const float* values = stamp.At(dy, dx + left - x);
        if (shape == kSphere) {
          Bulge(row + left - shown.left, values, r2, right - left);
        } else {
          Raise(row + left - shown.left, values, right - left);
        }
      }
    }
  }
  return map;
}

// One row's noise, octave by octave, so that each sum adds its terms in the order of the octaves.
void NoiseRow(const NoiseTables& noise, const Octaves& octaves, float fy, const std::vector<LatticePlace>& columns,
              std::vector<float>& sums) {
  const std::size_t width = sums.size();
  std::fill(sums.begin(), sums.end(), 0.0f);
  float y = fy * 16.0f;
  for (int k = 0; k < octaves.count; ++k, y *= 2.0f) {
    const LatticePlace row = PlaceOf(y);
    const float part = octaves.part[static_cast<std::size_t>(k)], weight = octaves.weight[static_cast<std::size_t>(k)];
    const LatticePlace* places = columns.data() + static_cast<std::size_t>(k) * width;
    for (std::size_t x = 0; x < width; ++x) sums[x] += Noise(noise, places[x], row) * part * weight;
  }
}

std::vector<LatticePlace> NoiseColumns(const Octaves& octaves, const TextureWindow& window) {
  std::vector<LatticePlace> columns;
  columns.reserve(static_cast<std::size_t>(octaves.count) * static_cast<std::size_t>(window.shown.Width()));
  for (int k = 0; k < octaves.count; ++k) {
    for (int x = window.shown.left; x < window.shown.right; ++x) {
      const float fx = static_cast<float>(x) / static_cast<float>(window.width);
      columns.push_back(PlaceOf(fx * 16.0f * static_cast<float>(1 << k)));
    }
  }
  return columns;
}

}  // namespace

double TextureCurve(const float (&values)[4], double t) noexcept { return CurveAt(CurvePoints(values), t); }

bool NoiseTablesBuilt() { return RunNoise().built; }

PackedDib GenerateCraterTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept {
  if (!window) return {};
  PackedDib picture = SolidDib(window.shown.Width(), window.shown.Height(), parameters.BackColour);
  const DibView view(picture);
  if (!view) return {};
  try {
    SeedFractalNoise(parameters.SeedValue[0]);
    const std::uint32_t craters = parameters.CreaterCount;
    std::vector<Impact> impacts = DrawImpacts(window.width, window.height, std::min(craters, kMostCraters) * 10);
    HeightField field = FieldFor(window, impacts);
    HitSurface(field, impacts, static_cast<double>(parameters.CreaterDepth));
    const auto shading = ShadingTable();
    std::array<std::array<std::uint8_t, 3>, shading.size()> pixels;
    for (std::size_t i = 0; i < shading.size(); ++i) {
      PutColour(pixels[i].data(), Blend(parameters.BackColour, parameters.ForeColour[0], shading[i]));
    }
    for (int y = 0; y < view.Height(); ++y) {
      if (EndRequested()) return {};
      const std::uint16_t* row = field.Row(window.shown.top + y);
      std::uint8_t* to = view.Row(y);
      const int end = std::min(window.shown.right, window.width - 1);
      for (int x = window.shown.left; x < end; ++x, to += 3) {
        const int slope = std::clamp(row[x + 1] - row[x], -kSteepest, kSteepest);
        std::copy_n(pixels[static_cast<std::size_t>(slope + kSteepest)].data(), 3, to);
      }
    }
  } catch (...) {
    return {};
  }
  return picture;
}

PackedDib GeneratePerturbationTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept {
  if (!window) return {};
  const int width = window.shown.Width(), height = window.shown.Height();
  PackedDib picture = BlankDib(width, height, nullptr, 24);
  const DibView view(picture);
  if (!view) return {};
  try {
    const int bubbles = std::clamp(static_cast<std::int32_t>(parameters.BubbleCount), 0, 1024);
    const float power = parameters.PerturbationPower, bubblePower = parameters.BubblePower;
    const ColourTable colours = MakeColourTable(parameters);
    const std::vector<float> map = bubbles ? BubbleMap(parameters, window, bubbles) : std::vector<float>();
    const Octaves octaves = power > kSmallest ? OctavesOf(parameters.MatrixSize) : Octaves{};
    NoiseTables& noise = RunNoise();
    if (octaves.count && !noise.built) BuildNoise(noise, parameters.SeedValue[0]);
    const std::vector<LatticePlace> columns = NoiseColumns(octaves, window);
    std::vector<float> sums(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
      if (EndRequested()) return {};
      const float fy = static_cast<float>(window.shown.top + y) / static_cast<float>(window.height);
      NoiseRow(noise, octaves, fy, columns, sums);
      std::uint8_t* to = view.Row(y);
      const auto row = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
      for (int x = 0; x < width; ++x, to += 3) {
        const float n = octaves.count ? sums[static_cast<std::size_t>(x)] * power : 0.0f;
        const float b =
            bubbles && bubblePower != 0.0f ? 2.0f * bubblePower * map[row + static_cast<std::size_t>(x)] - 1.0f : 0.0f;
        const float level = (n + b + 1.0f) * 0.5f;
        const float grey = level > 0.0f ? std::min(level, 1.0f) : 0.0f;
        std::copy_n(colours[static_cast<std::size_t>(static_cast<double>(grey) * 255.0)].data(), 3, to);
      }
    }
  } catch (...) {
    return {};
  }
  return picture;
}

}  // namespace glyphmotion
