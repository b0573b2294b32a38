// SPDX-License-Identifier: MIT
#include "materials/fractal_texture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "platform/random.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr double kRandomMax = 32767.0;

// Real and imaginary parts in separate planes, so that the transform's loops run along rows of each.
struct Spectrum {
  int side;
  std::vector<float> re, im;
  explicit Spectrum(int n)
      : side(n),
        re(static_cast<std::size_t>(n) * static_cast<std::size_t>(n)),
        im(static_cast<std::size_t>(n) * static_cast<std::size_t>(n)) {}
  void Set(int i, int j, float real, float imaginary) {
    const std::size_t at = static_cast<std::size_t>(i) * static_cast<std::size_t>(side) + static_cast<std::size_t>(j);
    re[at] = real;
    im[at] = imaginary;
  }
};

// The matrix's side: 1 is kept, all else is rounded up to 2, 4, 8, ...
int SideOf(int n) {
  if (n == 1) return 1;
  int power = 2;
  while (power < n) power *= 2;
  return power;
}

double RandomPhase() { return NextRandom() / kRandomMax * 2.0 * std::numbers::pi; }

// Approximately normal: the sum of four draws, scaled to unit variance.
double RandomGauss() {
  static const double b = std::sqrt(12.0), c = 2.0 * b / (kRandomMax * 4.0);
  int sum = 0;
  for (int k = 0; k < 4; ++k) sum += NextRandom();
  return c * sum - b;
}

// Coefficients whose magnitude falls with the frequency, in conjugate pairs, so that the transform is real.
void FillSpectrum(Spectrum& spectrum, double exponent) {
  const int n = spectrum.side, half = n / 2;
  const auto coefficient = [&](int i, int j, float& re, float& im) {
    const double phase = RandomPhase();
    const double radius =
        i || j ? std::pow(static_cast<double>(i) * i + static_cast<double>(j) * j, exponent) * RandomGauss() : 0.0;
    re = static_cast<float>(std::cos(phase) * radius);
    im = static_cast<float>(std::sin(phase) * radius);
  };
  float re, im;
  for (int i = 0; i <= half && !EndRequested(); ++i) {
    for (int j = 0; j <= half; ++j) {
      coefficient(i, j, re, im);
      const int mirrorI = i ? n - i : 0, mirrorJ = j ? n - j : 0;
      // In a matrix of one element half is 0, and the element is its own mirror.
      spectrum.Set(i, j, re, im);
      spectrum.Set(mirrorI, mirrorJ, re, -im);
    }
  }
  const auto at = [&](int i, int j) {
    return static_cast<std::size_t>(i) * static_cast<std::size_t>(n) + static_cast<std::size_t>(j);
  };
  spectrum.im[at(half, 0)] = spectrum.im[at(0, half)] = spectrum.im[at(half, half)] = 0.0f;
  for (int i = 1; i < half && !EndRequested(); ++i) {
    for (int j = 1; j < half; ++j) {
      coefficient(i, j, re, im);
      spectrum.Set(i, n - j, re, im);
      spectrum.Set(n - i, j, re, -im);
    }
  }
}

// One butterfly of whole rows: a + w b replaces a, a - w b replaces b. Products in double, rounded to float before they
// are added.
GLYPHMOTION_CLONES void Butterfly(float* __restrict aRe, float* __restrict aIm, float* __restrict bRe,
                                  float* __restrict bIm, int count, double wr, double wi) {
  for (int j = 0; j < count; ++j) {
    const double re = static_cast<double>(bRe[j]), im = static_cast<double>(bIm[j]);
    const auto tr = static_cast<float>(wr * re - wi * im), ti = static_cast<float>(wr * im + wi * re);
    bRe[j] = aRe[j] - tr;
    bIm[j] = aIm[j] - ti;
    aRe[j] += tr;
    aIm[j] += ti;
  }
}

// Transforms all columns at once: the butterflies of one column are independent of those of another.
void TransformColumns(Spectrum& spectrum) {
  const int n = spectrum.side;
  const auto rowOf = [&](std::vector<float>& plane, int i) {
    return plane.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(n);
  };
  for (int i = 1, reversed = 0; i < n; ++i) {
    int bit = n >> 1;
    for (; reversed & bit; bit >>= 1) reversed ^= bit;
    reversed ^= bit;
    if (i < reversed) {
      std::swap_ranges(rowOf(spectrum.re, i), rowOf(spectrum.re, i) + n, rowOf(spectrum.re, reversed));
      std::swap_ranges(rowOf(spectrum.im, i), rowOf(spectrum.im, i) + n, rowOf(spectrum.im, reversed));
    }
  }
  for (int half = 1; half < n; half *= 2) {
    const double theta = -2.0 * std::numbers::pi / (2.0 * half), s = std::sin(0.5 * theta);
    const double stepRe = -2.0 * s * s, stepIm = std::sin(theta);
    double wr = 1.0, wi = 0.0;
    for (int k = 0; k < half; ++k) {
      if (EndRequested()) return;
      for (int i = k; i < n; i += 2 * half) {
        Butterfly(rowOf(spectrum.re, i), rowOf(spectrum.im, i), rowOf(spectrum.re, i + half),
                  rowOf(spectrum.im, i + half), n, wr, wi);
      }
      const double old = wr;
      wr = wr + wr * stepRe - wi * stepIm;
      wi = wi + wi * stepRe + old * stepIm;
    }
  }
}

void Transpose(std::vector<float>& plane, int n) {
  constexpr int kBlock = 16;
  const auto side = static_cast<std::size_t>(n);
  for (int top = 0; top < n; top += kBlock) {
    for (int left = top; left < n; left += kBlock) {
      for (int i = top; i < std::min(top + kBlock, n); ++i) {
        for (int j = std::max(left, i + 1); j < std::min(left + kBlock, n); ++j) {
          std::swap(plane[static_cast<std::size_t>(i) * side + static_cast<std::size_t>(j)],
                    plane[static_cast<std::size_t>(j) * side + static_cast<std::size_t>(i)]);
        }
      }
    }
  }
}

// Along the rows first, then along the columns.
void Transform(Spectrum& spectrum) {
  Transpose(spectrum.re, spectrum.side);
  Transpose(spectrum.im, spectrum.side);
  TransformColumns(spectrum);
  Transpose(spectrum.re, spectrum.side);
  Transpose(spectrum.im, spectrum.side);
  TransformColumns(spectrum);
}

// Raises positive real parts to a power, then scales all to -1 to 1.
void Normalise(std::vector<float>& values, float power) {
  if (power != 1.0f) {
    for (float& v : values) {
      if ((&v - values.data()) % 4096 == 0 && EndRequested()) return;
      if (v > 0.0f) v = static_cast<float>(std::pow(static_cast<double>(v), static_cast<double>(power)));
    }
  }
  const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
  const double low = static_cast<double>(*lowest), high = static_cast<double>(*highest);
  const double middle = (high + low) / 2.0, half = (high - low) / 2.0;
  for (float& v : values) v = static_cast<float>((static_cast<double>(v) - middle) / half);
}

// The corner of the values that a layer shows, as bytes. Matrices below 32 are read sequentially as rows of 32, with
// zeros past their end.
std::vector<std::uint8_t> ByteImage(const Spectrum& spectrum, int m) {
  const int n = spectrum.side;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(m) * static_cast<std::size_t>(m));
  for (int y = 0; y < m; ++y) {
    for (int x = 0; x < m; ++x) {
      const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(n) + static_cast<std::size_t>(x);
      const double v = at < spectrum.re.size() ? static_cast<double>(spectrum.re[at]) : 0.0;
      const double level = (v + 1.0) * 255.0 * 0.5;
      // A flat spectrum has no range, so the scaling may give NaN.
      bytes[static_cast<std::size_t>(y) * static_cast<std::size_t>(m) + static_cast<std::size_t>(x)] =
          level >= 0.0 && level < 256.0 ? static_cast<std::uint8_t>(level) : std::uint8_t{0};
    }
  }
  return bytes;
}

// The position of a column or row of the picture between two of the byte image.
struct Between {
  int first, second;
  double weight;  // of the second
};
Between PlaceOf(int at, int span, int m) {
  const double u = span > 1 ? at / (span - 1.0) * (m - 1) : 0.0;
  const int first = static_cast<int>(std::floor(u));
  return {first, std::min(first + 1, m - 1), u - first};
}

// The opacities of one row of the picture, from the blend of two rows of the byte image.
GLYPHMOTION_CLONES void OpacitiesOf(const double* left, const double* right, int count, int* alpha) {
  for (int x = 0; x < count; ++x) {
    const double level = (left[x] + right[x] - 127.0) * 0.0078125 * 255.0;
    const int a = static_cast<int>(level);
    alpha[x] = a > 0 ? a : 0;
  }
}

void BlendRow(std::uint8_t* to, const int* alpha, int width, Colour colour) {
  const int red = RedOf(colour), green = GreenOf(colour), blue = BlueOf(colour);
  for (int x = 0; x < width; ++x, to += 3) {
    const int a = alpha[x];
    if (a == 0) continue;
    to[0] = BlendChannel(to[0], blue, a);
    to[1] = BlendChannel(to[1], green, a);
    to[2] = BlendChannel(to[2], red, a);
  }
}

// Blends the layer, scaled to the picture's size: only values above its middle are visible.
void CompositeLayer(const DibView& view, const TextureWindow& window, const Spectrum& spectrum, Colour colour) {
  const int m = std::clamp(spectrum.side, 32, 1024);
  const std::vector<std::uint8_t> bytes = ByteImage(spectrum, m);
  const int width = view.Width(), span = (std::max(window.width, window.height) + 1) & ~1;
  const auto columns = static_cast<std::size_t>(width);
  std::vector<Between> places(columns);
  for (int x = 0; x < width; ++x) places[static_cast<std::size_t>(x)] = PlaceOf(window.shown.left + x, span, m);
  std::vector<double> left(columns), right(columns);
  std::vector<int> alpha(columns);
  for (int y = 0; y < view.Height(); ++y) {
    if (EndRequested()) return;
    const Between row = PlaceOf(window.shown.top + y, window.height, m);
    const std::uint8_t* upper = bytes.data() + static_cast<std::size_t>(row.first) * static_cast<std::size_t>(m);
    const std::uint8_t* lower = bytes.data() + static_cast<std::size_t>(row.second) * static_cast<std::size_t>(m);
    for (std::size_t x = 0; x < columns; ++x) {
      const Between& place = places[x];
      const double above = upper[place.first] * (1.0 - place.weight) + upper[place.second] * place.weight;
      const double below = lower[place.first] * (1.0 - place.weight) + lower[place.second] * place.weight;
      left[x] = above * (1.0 - row.weight);
      right[x] = below * row.weight;
    }
    OpacitiesOf(left.data(), right.data(), width, alpha.data());
    BlendRow(view.Row(y), alpha.data(), width, colour);
  }
}

}  // namespace

void SeedFractalNoise(std::uint32_t seed) noexcept { SeedRandom(seed); }

PackedDib GenerateFractalTexture(const TextureSpec& parameters, const TextureWindow& window) noexcept {
  if (!window || parameters.MatrixSize > kMaxMatrix) return {};
  PackedDib picture = SolidDib(window.shown.Width(), window.shown.Height(), parameters.BackColour);
  const DibView view(picture);
  if (!view) return {};
  try {
    const int layers = parameters.TextureType < 4 ? static_cast<int>(parameters.TextureType) + 1 : 0;
    for (int k = 0; k < layers; ++k) {
      if (EndRequested()) return {};
      SeedFractalNoise(parameters.SeedValue[k]);
      const double h = 3.0 - static_cast<double>(parameters.Dimension[k]);
      Spectrum spectrum(SideOf(static_cast<int>(parameters.MatrixSize)));
      FillSpectrum(spectrum, -(h + 1.0) / 2.0);
      Transform(spectrum);
      Normalise(spectrum.re, parameters.Power[k]);
      CompositeLayer(view, window, spectrum, parameters.ForeColour[k]);
    }
  } catch (...) {
    return {};
  }
  return picture;
}

}  // namespace glyphmotion
