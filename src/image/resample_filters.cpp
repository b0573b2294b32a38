// SPDX-License-Identifier: MIT
#include "image/resample_filters.h"

#include <cmath>
#include <numbers>

namespace glyphmotion {
namespace {

double Box(double x) { return std::abs(x) <= 0.5 ? 1.0 : 0.0; }

double Triangle(double x) {
  x = std::abs(x);
  return x < 1.0 ? 1.0 - x : 0.0;
}

double Hermite(double x) {
  x = std::abs(x);
  return x < 1.0 ? (2.0 * x - 3.0) * x * x + 1.0 : 0.0;
}

double Hann(double x) { return std::abs(x) < 1.0 ? 0.5 + 0.5 * std::cos(std::numbers::pi * x) : 0.0; }

double Hamming(double x) { return std::abs(x) < 1.0 ? 0.54 + 0.46 * std::cos(std::numbers::pi * x) : 0.0; }

double Blackman(double x) {
  return std::abs(x) < 1.0 ? 0.42 + 0.5 * std::cos(std::numbers::pi * x) + 0.08 * std::cos(2.0 * std::numbers::pi * x)
                           : 0.0;
}

double Gaussian(double x) {
  return std::abs(x) < 1.25 ? std::exp(-2.0 * x * x) * std::sqrt(2.0 / std::numbers::pi) : 0.0;
}

double QuadraticSpline(double x) {
  x = std::abs(x);
  if (x < 0.5) return 0.75 - x * x;
  return x < 1.5 ? 0.5 * (x - 1.5) * (x - 1.5) : 0.0;
}

// The two-parameter family of cubics of Mitchell and Netravali, "Reconstruction Filters in Computer Graphics".
double Cubic(double x, double b, double c) {
  x = std::abs(x);
  const double x2 = x * x;
  if (x < 1.0) {
    return ((12.0 - 9.0 * b - 6.0 * c) * (x * x2) + (-18.0 + 12.0 * b + 6.0 * c) * x2 + (6.0 - 2.0 * b)) / 6.0;
  }
  if (x >= 2.0) return 0.0;
  return ((-b - 6.0 * c) * (x * x2) + (6.0 * b + 30.0 * c) * x2 + (-12.0 * b - 48.0 * c) * x + (8.0 * b + 24.0 * c)) /
         6.0;
}

double CubicSpline(double x) { return Cubic(x, 1.0, 0.0); }
double CatmullRom(double x) { return Cubic(x, 0.0, 0.5); }
double Mitchell(double x) { return Cubic(x, 1.0 / 3.0, 1.0 / 3.0); }

double Sinc(double x) {
  if (x == 0.0) return 1.0;
  x *= std::numbers::pi;
  return std::sin(x) / x;
}

double Lanczos3(double x) { return std::abs(x) < 3.0 ? Sinc(x) * Sinc(x / 3.0) : 0.0; }

// Bessel's function of the first kind and order, up to 11, by its integral over half a turn: on a periodic function the
// trapezoid rule of this many steps is exact to the last digits.
double BesselJ1(double x) {
  constexpr int kSteps = 32;
  double sum = 0.0;
  for (int step = 1; step < kSteps; ++step) {
    const double angle = std::numbers::pi * step / kSteps;
    sum += std::cos(angle - x * std::sin(angle));
  }
  return sum / kSteps;  // the two ends are 1 and -1
}

double BlackmanBessel(double x) {
  x = std::abs(x);
  const double jinc = x == 0.0 ? std::numbers::pi / 4.0 : BesselJ1(std::numbers::pi * x) / (2.0 * x);
  return jinc * Blackman(x / 3.2383);
}

double BlackmanSinc(double x) { return Sinc(x) * Blackman(x / 4.0); }

}  // namespace

const ResampleFilter kResampleFilters[16] = {
    {Box, 0.0},          {Box, 0.0},        {Box, 0.5},      {Triangle, 1.0},  {Hermite, 1.0},
    {Hann, 1.0},         {Hamming, 1.0},    {Blackman, 1.0}, {Gaussian, 1.25}, {QuadraticSpline, 1.5},
    {CubicSpline, 2.0},  {CatmullRom, 2.0}, {Mitchell, 2.0}, {Lanczos3, 3.0},  {BlackmanBessel, 3.2383},
    {BlackmanSinc, 4.0},
};

}  // namespace glyphmotion
