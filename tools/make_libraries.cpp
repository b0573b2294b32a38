// SPDX-License-Identifier: MIT
// Makes the shipped libraries: tlmplgm4.fft, tlmplgm4.mtx and FountainLibrary.fll, into the folder that is its
// argument. Textures and fountains are texts of the command line's own forms; tiles are small functions of the plane
// with period 1 in both directions, sampled 5 x 5 times a pixel. The output is committed: run `cmake --build
// build/release --target libraries` after a change here.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "materials/fountain.h"
#include "materials/material_text.h"
#include "materials/shipped.h"
#include "materials/texture_library.h"
#include "materials/tile.h"
#include "resources/shipped_fountains.h"
#include "resources/shipped_tiles.h"

using namespace glyphmotion;

namespace {

struct Row {
  const char *name, *text;
};

constexpr Row kTextures[] = {
    {"Clouds", "fractal2,back=#2f6fc4,fore1=#ffffff,seed=11,size=64,power=0.75,density=2.2"},
    {"Storm",
     "fractal4,back=#1d2632,fore1=#4a5a6b,fore2=#8c99a6,fore3=#0d1218,seed=221,size=128,power=0.8,density=2.3"},
    {"Sunset Sky",
     "fractal4,back=#3a2a63,fore1=#d9527a,fore2=#ff9a56,fore3=#ffe29a,seed=71,size=64,power=0.8,density=2.1"},
    {"Marble",
     "fractal4,back=#efece6,fore1=#b9b4b0,fore2=#ffffff,fore3=#6f6b70,seed=305,size=256,power=0.9,density=2.35"},
    {"Green Marble",
     "fractal4,back=#0e3b2b,fore1=#1f6b4c,fore2=#062017,fore3=#a7d3b2,seed=417,size=256,power=1.1,density=2.35"},
    {"Rose Marble",
     "fractal4,back=#e8b9b0,fore1=#b5625f,fore2=#fbe7df,fore3=#8a4048,seed=512,size=256,power=1.1,density=2.3"},
    {"Granite",
     "fractal5,back=#77767a,fore1=#2b2b30,fore2=#c9c4bf,fore3=#8f6f66,fore4=#eceae6,seed=620,size=256,power=1,density="
     "2.95"},
    {"Water", "fractal4,back=#0b4f8a,fore1=#1f86bd,fore2=#0a3566,fore3=#9fe3ee,seed=733,size=128,power=1,density=2.25"},
    {"Lagoon", "fractal3,back=#0a8f96,fore1=#46d3c5,fore2=#d8fbef,seed=801,size=64,power=0.9,density=2.05"},
    {"Ice", "fractal4,back=#bfe3f5,fore1=#ffffff,fore2=#78b7dd,fore3=#f2fbff,seed=912,size=256,power=1.1,density=2.4"},
    {"Fire", "fractal4,back=#4a0500,fore1=#d42a00,fore2=#ff8a00,fore3=#fff0a0,seed=1021,size=128,power=1,density=2.1"},
    {"Embers",
     "fractal4,back=#140806,fore1=#6e1604,fore2=#e0600f,fore3=#ffd27a,seed=1137,size=256,power=0.9,density=2.3"},
    {"Lava",
     "fractal5,back=#ff7a1a,fore1=#c81e00,fore2=#2a0a08,fore3=#1a0606,fore4=#ffd25a,seed=1240,size=128,power=0.8,"
     "density=2.2"},
    {"Rust",
     "fractal5,back=#7a3b1a,fore1=#b5652b,fore2=#4c2413,fore3=#d9935a,fore4=#2f1a12,seed=1350,size=256,power=0.9,"
     "density=2.6"},
    {"Sand",
     "fractal4,back=#dcc08a,fore1=#c49f63,fore2=#f0dcae,fore3=#a98451,seed=1461,size=256,power=0.9,density=2.85"},
    {"Moss",
     "fractal5,back=#2c3f1a,fore1=#5f7f2a,fore2=#1a2810,fore3=#93ad4a,fore4=#c9d17f,seed=1570,size=256,power=1,density="
     "2.6"},
    {"Camouflage",
     "fractal4,back=#6f7048,fore1=#3c4a2a,fore2=#9a8a5a,fore3=#2a2a20,seed=1682,size=64,power=0.35,density=2.05"},
    {"Nebula",
     "fractal5,back=#05030f,fore1=#3a1a6e,fore2=#b0307a,fore3=#2f6fd0,fore4=#ffe6f5,seed=1790,size=128,power=1.2,"
     "density=2.2"},
    {"Aurora",
     "fractal4,back=#04121f,fore1=#0d6b5c,fore2=#57e39a,fore3=#7a55d9,seed=1805,size=32,power=1.1,density=2.0"},
    {"Smoke", "fractal3,back=#17181c,fore1=#6d6f78,fore2=#c9cbd2,seed=1911,size=128,power=1,density=2.15"},
    {"Parchment",
     "fractal4,back=#efdcae,fore1=#d9bd82,fore2=#f9efd2,fore3=#b58f56,seed=2022,size=128,power=1.1,density=2.45"},
    {"Moon", "craters,back=#20222a,fore1=#e9e6da,seed=2131,craters=6000,depth=1.25"},
    {"Mars", "craters,back=#5a1f10,fore1=#f0a46c,seed=2240,craters=4200,depth=1.15"},
    {"Hammered Gold", "craters,back=#7a4a08,fore1=#ffe9a0,seed=2353,craters=2600,depth=1.4"},
    {"Pewter", "craters,back=#3b4046,fore1=#dfe5ea,seed=2460,craters=9000,depth=0.9"},
    {"Wood",
     "perturbation,seed=2571,size=130,bubbles=0,noise=1.5,red=0.34/0.74/0.44/0.80,green=0.17/0.48/0.25/0.55,blue=0.07/"
     "0.27/0.12/0.32"},
    {"Steel",
     "perturbation,seed=2682,size=520,bubbles=0,noise=0.45,red=0.22/0.48/0.68/0.95,green=0.25/0.51/0.71/0.97,blue=0.29/"
     "0.55/0.75/1"},
    {"Silk",
     "perturbation,seed=2790,size=150,bubbles=0,noise=1.1,red=0.25/0.55/0.82/1,green=0.04/0.10/0.35/0.80,blue=0.20/"
     "0.36/0.55/0.88"},
    {"Jade",
     "perturbation,seed=2801,size=700,bubbles=0,noise=0.6,red=0.02/0.14/0.42/0.85,green=0.22/0.45/0.68/0.96,blue=0.15/"
     "0.34/0.52/0.86"},
    {"Champagne",
     "perturbation,seed=2912,size=200,bubbles=160,bubblesize=9,bubblepower=0.5,shape=luminous,noise=0.35,red=0.62/0.85/"
     "0.97/1,green=0.45/0.70/0.90/1,blue=0.18/0.42/0.72/0.96"},
    {"Deep Sea",
     "perturbation,seed=3021,size=200,bubbles=90,bubblesize=13,bubblepower=0.4,shape=fuzzy,noise=0.7,red=0/0.02/0.10/"
     "0.60,green=0.10/0.32/0.58/0.92,blue=0.26/0.52/0.72/0.96"},
    {"Leopard",
     "perturbation,seed=3140,size=200,bubbles=64,bubblesize=9,bubblepower=0.62,shape=ellipse,noise=0.25,red=0.90/0.80/"
     "0.20/0.12,green=0.68/0.54/0.11/0.06,blue=0.36/0.26/0.06/0.04"},
};

// Tiles ---------------------------------------------------------------------------------------------------------------

struct Paint {
  double r, g, b;
};
Paint Hex(std::uint32_t rgb) {
  return {static_cast<double>(rgb >> 16 & 255), static_cast<double>(rgb >> 8 & 255), static_cast<double>(rgb & 255)};
}
Paint Mixed(Paint a, Paint b, double t) {
  t = std::clamp(t, 0.0, 1.0);
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Paint Scaled(Paint a, double k) { return {a.r * k, a.g * k, a.b * k}; }

double Fraction(double v) { return v - std::floor(v); }
double Smooth(double edge0, double edge1, double v) {
  const double t = std::clamp((v - edge0) / (edge1 - edge0), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}
double Wave(double v) { return 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * v); }
double Hash(int x, int y, int salt) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u ^
                    static_cast<std::uint32_t>(salt) * 0xC2B2AE3Du;
  h = (h ^ h >> 15) * 0x2C1B3C6Du;
  h = (h ^ h >> 12) * 0x297A2D39u;
  return static_cast<double>(h ^ h >> 15) / 4294967295.0;
}

// Value noise with `cells` cells a period.
double PeriodicNoise(double u, double v, int cells, int salt) {
  const double x = Fraction(u) * cells, y = Fraction(v) * cells;
  const int ix = static_cast<int>(x) % cells, iy = static_cast<int>(y) % cells, jx = (ix + 1) % cells,
            jy = (iy + 1) % cells;
  const double fx = Smooth(0, 1, x - std::floor(x)), fy = Smooth(0, 1, y - std::floor(y));
  const double top = Hash(ix, iy, salt) * (1 - fx) + Hash(jx, iy, salt) * fx;
  const double low = Hash(ix, jy, salt) * (1 - fx) + Hash(jx, jy, salt) * fx;
  return top * (1 - fy) + low * fy;
}
double Turbulence(double u, double v, int cells, int salt) {
  double sum = 0, weight = 0.5;
  for (int octave = 0; octave < 4; ++octave, cells *= 2, weight /= 2)
    sum += weight * PeriodicNoise(u, v, cells, salt + octave);
  return sum / 0.9375;
}

// The distance to the nearest and the next of `cells` x `cells` jittered points, and which one it is.
struct Nearest {
  double first = 9, second = 9;
  int x = 0, y = 0;
};
Nearest NearestPoint(double u, double v, int cells, double jitter, int salt) {
  const double x = Fraction(u) * cells, y = Fraction(v) * cells;
  Nearest nearest;
  for (int dy = -2; dy <= 2; ++dy) {
    for (int dx = -2; dx <= 2; ++dx) {
      const int cx = static_cast<int>(std::floor(x)) + dx, cy = static_cast<int>(std::floor(y)) + dy;
      const int px = (cx + 2 * cells) % cells, py = (cy + 2 * cells) % cells;
      const double d = std::hypot(cx + 0.5 + jitter * (Hash(px, py, salt) - 0.5) - x,
                                  cy + 0.5 + jitter * (Hash(px, py, salt + 1) - 0.5) - y);
      if (d < nearest.first) {
        nearest = {d, nearest.first, px, py};
      } else {
        nearest.second = std::min(nearest.second, d);
      }
    }
  }
  return nearest;
}

using TileFunction = Paint (*)(double u, double v);

Paint Bricks(double u, double v) {
  const double row = std::floor(v * 4), x = Fraction(u * 2 + 0.5 * std::fmod(row, 2.0)), y = Fraction(v * 4);
  const int brick = static_cast<int>(std::floor(u * 2 + 0.5 * std::fmod(row, 2.0))) % 2;
  const double inside = Smooth(0.02, 0.05, std::min(x, 1 - x)) * Smooth(0.05, 0.11, std::min(y, 1 - y));
  const Paint clay = Scaled(Mixed(Hex(0xA8452F), Hex(0xC46A48), Hash(brick, static_cast<int>(row), 5)),
                            0.86 + 0.2 * Turbulence(u, v, 8, 9) + 0.1 * (0.5 - y));
  return Mixed(Scaled(Hex(0xCFC3B2), 0.9 + 0.15 * Turbulence(u, v, 16, 3)), clay, inside);
}
Paint Planks(double u, double v) {
  const int plank = static_cast<int>(v * 4);
  const double y = Fraction(v * 4), grain = Turbulence(u * 1.0 + 0.37 * plank, v * 4, 4, plank * 7);
  const double rings = Wave(3 * grain + 2 * y + 0.21 * plank);
  const Paint wood = Mixed(Mixed(Hex(0x8A5A2E), Hex(0x9F6E3B), Hash(plank, 0, 2)), Hex(0x5E3A1B), 0.55 * rings);
  const double end = Fraction(u + 0.29 * plank);
  return Mixed(Hex(0x2B190C), wood,
               Smooth(0.02, 0.07, std::min(y, 1 - y)) * Smooth(0.004, 0.016, std::min(end, 1 - end)));
}
Paint Honeycomb(double u, double v) {
  // Seven across and eight rows down come close enough to regular hexagons.
  constexpr double kWidth = 1.0 / 7, kRow = 1.0 / 8, kStretch = 0.8660254 * kWidth / kRow;
  double best = 9, second = 9;
  for (int j = -2; j <= 9; ++j) {
    for (int i = -2; i <= 8; ++i) {
      const double d = std::hypot(u - (i + 0.5 * (j & 1)) * kWidth, (v - j * kRow) * kStretch) / kWidth;
      second = std::min(second, std::max(best, d));
      best = std::min(best, d);
    }
  }
  const Paint honey = Mixed(Hex(0xFFDD6E), Hex(0xE8960C), best / 0.58);
  return Mixed(Hex(0x7A4206), honey, Smooth(0.06, 0.16, second - best));
}
Paint Scales(double u, double v) {
  for (int j = 0; j < 6; ++j) {
    const double cy = std::floor(v * 4) / 4 + 0.25 - j * 0.25 + 0.25;
    const int row = static_cast<int>(std::lround(cy * 4));
    const double shift = row & 1 ? 0.25 : 0.0;
    const double cx = std::round((u - shift) * 2) / 2 + shift, d = std::hypot(u - cx, v - cy);
    if (v > cy || d > 0.25) continue;
    const double ring = Fraction(d * 12 + 0.1);
    return Mixed(Hex(0x0D4F6E), Hex(0xE9F4EE), Smooth(0.42, 0.58, ring) * (1 - Smooth(0.92, 1.0, ring)));
  }
  return Hex(0x0D4F6E);
}
Paint Carbon(double u, double v) {
  const int x = static_cast<int>(u * 8), y = static_cast<int>(v * 8);
  const bool over = ((x + y) & 3) < 2;
  const double along = over ? Fraction(v * 4) : Fraction(u * 4), across = over ? Fraction(u * 8) : Fraction(v * 8);
  const double round = std::sin(std::numbers::pi * across), light = 0.35 + 0.65 * (over ? along : 1 - along);
  return Mixed(Hex(0x0B0C0E), Hex(0x565C66), 0.75 * round * light);
}
Paint Tartan(double u, double v) {
  const auto band = [](double t) {
    if (t < 0.30) return Hex(0x0F3D2E);
    if (t < 0.34) return Hex(0xE6C34A);
    if (t < 0.62) return Hex(0x8F1D24);
    if (t < 0.66) return Hex(0xF2EEE4);
    return Hex(0x14284D);
  };
  const bool warp = std::fmod(std::floor((u + v) * 32), 2.0) == 0.0;
  return Scaled(Mixed(band(Fraction(u)), band(Fraction(v)), warp ? 0.25 : 0.75), 1.05);
}
Paint Argyle(double u, double v) {
  const double d = std::fabs(Fraction(u) - 0.5) + std::fabs(Fraction(v) - 0.5);
  const double a = Fraction(u - v), b = Fraction(u + v);
  const Paint field = Mixed(Hex(0x24486B), Hex(0xD8CDB4), d < 0.5 ? 1.0 : 0.0);
  const double line = std::min({std::fabs(a - 0.0), 1 - a, std::fabs(b - 0.0), 1 - b});
  return Mixed(Hex(0xB8432F), field, Smooth(0.012, 0.03, line));
}
Paint Dots(double u, double v) {
  const double x = Fraction(u * 2 + 0.5 * (static_cast<int>(v * 4) & 1)) - 0.5, y = Fraction(v * 4) - 0.5;
  return Mixed(Hex(0xFFF4E2), Hex(0xE2506A), Smooth(0.115, 0.135, std::hypot(x * 0.5, y * 0.25) * 1.0));
}
Paint Waves(double u, double v) {
  const double t = Fraction(v * 4 + 0.16 * std::sin(2 * std::numbers::pi * u * 2));
  const Paint deep = Mixed(Hex(0x0F4C81), Hex(0x49A6C9), t);
  return Mixed(deep, Hex(0xF4FBFA), Smooth(0.80, 0.86, t) * (1 - Smooth(0.93, 0.99, t)));
}
Paint Chevron(double u, double v) {
  const double t = Fraction(v * 3 + std::fabs(Fraction(u * 2) - 0.5));
  const Paint a = t < 1.0 / 3 ? Hex(0xF2A541) : t < 2.0 / 3 ? Hex(0xF3E9D2) : Hex(0x2A9D8F);
  return Scaled(a, 0.94 + 0.08 * (Fraction(u * 2) < 0.5 ? 1 : 0));
}
Paint Marble(double u, double v) {
  const double t = Turbulence(u, v, 3, 21), vein = std::fabs(std::sin(2 * std::numbers::pi * (u + v + 1.3 * t)));
  return Mixed(Mixed(Hex(0x8D8A90), Hex(0xF5F2ED), Smooth(0.0, 0.35, vein)), Hex(0xDCD6CF),
               0.5 * Turbulence(u, v, 6, 4));
}
Paint Terrazzo(double u, double v) {
  const Nearest near = NearestPoint(u, v, 6, 0.9, 31);
  constexpr std::uint32_t chips[] = {0xD9694F, 0x3E7C74, 0xE8B04B, 0x27374D, 0xC9A7A0};
  const Paint chip = Hex(chips[static_cast<int>(Hash(near.x, near.y, 8) * 4.999)]);
  const double size = 0.10 + 0.24 * Hash(near.x, near.y, 12);
  return Mixed(Scaled(Hex(0xF1EBE1), 0.97 + 0.05 * Turbulence(u, v, 24, 2)), chip,
               Smooth(0.0, 0.05, near.second - near.first - 0.34 + size * 0.9));
}
Paint Cobbles(double u, double v) {
  const Nearest near = NearestPoint(u, v, 5, 0.75, 55);
  const double edge = near.second - near.first, dome = Smooth(0.0, 0.55, edge);
  const Paint stone = Mixed(Hex(0x5C6068), Hex(0xA9A59C), Hash(near.x, near.y, 6));
  return Mixed(Hex(0x24252A), Scaled(stone, (0.62 + 0.5 * dome) * (0.9 + 0.2 * Turbulence(u, v, 16, 77))),
               Smooth(0.05, 0.16, edge));
}
Paint Knit(double u, double v) {
  const double x = Fraction(u * 4), side = std::fabs(x - 0.5) * 2, y = Fraction(v * 6 + 0.55 * side);
  const double loop = std::sin(std::numbers::pi * y),
               dent = Smooth(0.0, 0.22, side) * (1 - 0.45 * Smooth(0.82, 1.0, side));
  return Mixed(Hex(0x6B1F2E), Hex(0xD9646B), (0.25 + 0.75 * loop) * dent);
}
Paint Starry(double u, double v) {
  const double haze = Turbulence(u, v, 3, 61);
  Paint sky = Mixed(Hex(0x060A1E), Hex(0x2B2F6B), Smooth(0.35, 0.8, haze));
  for (int i = 0; i < 26; ++i) {
    double dx = std::fabs(u - Hash(i, 1, 9)), dy = std::fabs(v - Hash(i, 2, 9));
    dx = std::min(dx, 1 - dx);
    dy = std::min(dy, 1 - dy);
    const double size = 0.006 + 0.014 * Hash(i, 3, 9) * Hash(i, 4, 9), d = std::hypot(dx, dy);
    sky = Mixed(sky, Mixed(Hex(0xFFF3D0), Hex(0xDDE8FF), Hash(i, 5, 9)),
                size * size / (d * d + 0.3 * size * size) - 0.08);
  }
  return sky;
}
Paint Circuit(double u, double v) {
  const int x = static_cast<int>(u * 6), y = static_cast<int>(v * 6);
  const double fx = Fraction(u * 6) - 0.5, fy = Fraction(v * 6) - 0.5;
  const auto right = [](int i, int j) { return Hash((i + 6) % 6, (j + 6) % 6, 14) < 0.5; };
  const auto down = [](int i, int j) { return Hash((i + 6) % 6, (j + 6) % 6, 15) < 0.5; };
  double d = 9;
  if (right(x, y)) d = std::min(d, std::hypot(std::max(0.0, -fx), fy));
  if (right(x - 1, y)) d = std::min(d, std::hypot(std::max(0.0, fx), fy));
  if (down(x, y)) d = std::min(d, std::hypot(fx, std::max(0.0, -fy)));
  if (down(x, y - 1)) d = std::min(d, std::hypot(fx, std::max(0.0, fy)));
  const double pad = std::hypot(fx, fy);
  const int ends = right(x, y) + right(x - 1, y) + down(x, y) + down(x, y - 1);
  Paint board = Mixed(Hex(0x2FBF8A), Hex(0x0B3B34), Smooth(0.07, 0.12, d));
  if (ends == 1)
    board = Mixed(Mixed(Hex(0x0B3B34), Hex(0xE7D28A), Smooth(0.08, 0.12, pad)), board, Smooth(0.2, 0.25, pad));
  return board;
}
Paint Mosaic(double u, double v) {
  const int x = static_cast<int>(u * 8), y = static_cast<int>(v * 8);
  const double fx = Fraction(u * 8), fy = Fraction(v * 8), edge = std::min({fx, 1 - fx, fy, 1 - fy});
  constexpr std::uint32_t glass[] = {0x0E6BA8, 0x2A93D5, 0x7CC6E8, 0x0A4174, 0x19B5B1, 0xCFEAF2};
  const Paint colour = Hex(glass[static_cast<int>(Hash(x, y, 44) * 5.999)]);
  return Mixed(Hex(0xEDEBE4), Scaled(colour, 0.92 + 0.16 * (1 - fy)), Smooth(0.05, 0.10, edge));
}
Paint Bubbles(double u, double v) {
  Paint water = Mixed(Hex(0x0B3C6E), Hex(0x1673A8), Wave(v + 0.15 * std::sin(2 * std::numbers::pi * u)));
  for (int i = 0; i < 15; ++i) {
    double dx = u - Hash(i, 1, 23), dy = v - Hash(i, 2, 23);
    dx -= std::round(dx);
    dy -= std::round(dy);
    const double size = 0.035 + 0.085 * Hash(i, 3, 23), d = std::hypot(dx, dy) / size;
    if (d > 1.05) continue;
    water = Mixed(water, Hex(0xBFEFFF), 0.55 * std::pow(std::min(d, 1.0), 4) * (1 - Smooth(0.97, 1.05, d)) + 0.06);
    water = Mixed(water, Hex(0xFFFFFF), 0.9 * (1 - Smooth(0.12, 0.26, std::hypot(dx / size + 0.38, dy / size + 0.42))));
  }
  return water;
}
Paint Rivets(double u, double v) {
  const double x = Fraction(u * 2) - 0.5, y = Fraction(v * 2) - 0.5, seam = 0.5 - std::max(std::fabs(x), std::fabs(y));
  Paint plate = Scaled(Mixed(Hex(0x7E8B97), Hex(0x9CA8B3), Turbulence(u, v * 1.0, 12, 3)), 1.0 - 0.18 * y);
  plate = Mixed(Hex(0x39424B), plate, Smooth(0.008, 0.03, seam));
  const double dx = std::fabs(x) - 0.39, dy = std::fabs(y) - 0.39, d = std::hypot(dx, dy) / 0.055;
  if (d < 1)
    plate = Mixed(
        Hex(0x4A545E), Hex(0xE6ECF0),
        0.5 + 0.5 * (-(std::fabs(x) - 0.39) * (x < 0 ? -1 : 1) - (std::fabs(y) - 0.39) * (y < 0 ? -1 : 1)) / 0.055);
  return plate;
}
Paint Leaves(double u, double v) {
  Paint base = Hex(0x12372A);
  for (int i = 0; i < 22; ++i) {
    double dx = u - Hash(i, 1, 71), dy = v - Hash(i, 2, 71);
    dx -= std::round(dx);
    dy -= std::round(dy);
    const double turn = 2 * std::numbers::pi * Hash(i, 3, 71), size = 0.14 + 0.06 * Hash(i, 4, 71);
    const double a = (dx * std::cos(turn) + dy * std::sin(turn)) / size,
                 b = (-dx * std::sin(turn) + dy * std::cos(turn)) / size;
    if (std::fabs(a) >= 1) continue;
    const double half = 0.42 * (1 - a * a) * (1 - 0.25 * a), inside = half - std::fabs(b);
    if (inside < -0.03) continue;
    const Paint leaf = Scaled(Mixed(Hex(0x2E6B3E), Hex(0xA7C26A), Hash(i, 5, 71)), b > 0 ? 1.06 : 0.9);
    const double veins = Smooth(0.015, 0.05, std::fabs(b)) *
                         (0.85 + 0.15 * Smooth(0.1, 0.25, std::fabs(Fraction(a * 5 - std::fabs(b) * 4) - 0.5)));
    base = Mixed(base, Scaled(leaf, 0.7 + 0.3 * veins), Smooth(-0.03, 0.02, inside));
  }
  return base;
}

struct TileRow {
  TileFunction at;
  int side;
};
constexpr TileRow kTiles[] = {{Bricks, 64},  {Planks, 96},   {Honeycomb, 112}, {Scales, 64}, {Carbon, 32},
                              {Tartan, 64},  {Argyle, 48},   {Dots, 48},       {Waves, 64},  {Chevron, 48},
                              {Marble, 128}, {Terrazzo, 96}, {Cobbles, 96},    {Knit, 48},   {Starry, 128},
                              {Circuit, 96}, {Mosaic, 64},   {Bubbles, 96},    {Rivets, 64}, {Leaves, 96}};

static_assert(std::size(kTiles) == std::size(kShippedTileNames));

PackedDib DrawTile(const TileRow& row) {
  constexpr int kSamples = 5;
  PackedDib tile = BlankDib(row.side, row.side, nullptr, 24);
  const DibView view(tile);
  for (int y = 0; y < row.side; ++y) {
    for (int x = 0; x < row.side; ++x) {
      Paint sum{0, 0, 0};
      for (int k = 0; k < kSamples * kSamples; ++k) {
        const Paint p =
            row.at((x + (k % kSamples + 0.5) / kSamples) / row.side, (y + (k / kSamples + 0.5) / kSamples) / row.side);
        sum = {sum.r + p.r, sum.g + p.g, sum.b + p.b};
      }
      const auto channel = [](double v) {
        return static_cast<int>(std::clamp(v / (kSamples * kSamples) + 0.5, 0.0, 255.0));
      };
      view.SetPixel(x, y, MakeColour(channel(sum.r), channel(sum.g), channel(sum.b)));
    }
  }
  return tile;
}

bool Parse(const std::string& text, Material& material) {
  std::string error;
  DefaultMaterial(material, 0);
  if (ParseMaterial(text, material, error)) return true;
  std::fprintf(stderr, "make_libraries: %s\n", error.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "make_libraries: give the folder to write to\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/";
  const LibraryStamp nobody{0, "Thu Jan  1 00:00:00 1970", "", "", "", false};
  Material material;
  TextureLibrary textures;
  for (const Row& row : kTextures) {
    if (!Parse(std::string("texture:") + row.text, material)) return 1;
    textures.textures.push_back({row.name, material.Texture});
  }
  std::vector<FountainSpec> fountains;
  for (const ShippedFountain& row : ShippedFountains()) {
    if (!Parse(std::string("fountain:") + row.name, material)) return 1;
    fountains.push_back(material.Fountain);
  }
  TileLibrary tiles;
  for (const TileRow& row : kTiles) tiles.tiles.push_back(DrawTile(row));
  const bool written = WriteTextureLibrary(folder + kTextureLibraryName, textures, nobody, true) &&
                       WriteTileLibrary(folder + kTileLibraryName, tiles, nobody) &&
                       WriteFountainLibrary(folder + kFountainLibraryName, fountains, 0);
  if (!written) std::fprintf(stderr, "make_libraries: cannot write to %s\n", folder.c_str());
  return written ? 0 : 1;
}
