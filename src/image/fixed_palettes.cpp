// SPDX-License-Identifier: MIT
#include "image/fixed_palettes.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace glyphmotion {

namespace {

using Levels = std::span<const std::uint8_t>;

constexpr std::uint8_t kLevels2[] = {0, 255};
constexpr std::uint8_t kLevels4[] = {0, 85, 170, 255};
constexpr std::uint8_t kLevels6[] = {0, 51, 102, 153, 204, 255};
constexpr std::uint8_t kLevels8[] = {0, 36, 72, 108, 144, 180, 216, 255};
constexpr std::uint8_t kRoundedLevels8[] = {0, 36, 73, 109, 146, 182, 219, 255};

constexpr Rgb kWindows16[] = {{0, 0, 0},       {128, 0, 0},   {0, 128, 0},   {128, 128, 0},
                              {0, 0, 128},     {128, 0, 128}, {0, 128, 128}, {128, 128, 128},
                              {192, 192, 192}, {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                              {0, 0, 255},     {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};
constexpr Rgb kPrimaries8[] = {{0, 0, 0},   {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                               {0, 0, 255}, {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};

/// A palette is a list, or the grid of its levels with red the slowest and blue the fastest counter.
struct FixedPalette {
  int depth;
  std::span<const Rgb> list;
  Levels red, green, blue;
};

constexpr Rgb kBlackAndWhite[] = {{0, 0, 0}, {255, 255, 255}};
constexpr int kGreyLevels = 8;

const FixedPalette kFixedPalettes[] = {
    {1, kBlackAndWhite, {}, {}, {}},
    {4, kWindows16, {}, {}, {}},
    {5, {}, kLevels4, kLevels4, kLevels2},
    {6, {}, kLevels4, kLevels4, kLevels4},
    {7, {}, kLevels4, kLevels8, kLevels4},
    {8, {}, kLevels6, kLevels6, kLevels6},
    {8, {}, kLevels8, kLevels8, kLevels4},
    {8, {}, kRoundedLevels8, kRoundedLevels8, kLevels4},
    {8, {}, {}, {}, {}},  // the grey levels
    {3, kPrimaries8, {}, {}, {}},
};

std::size_t Write(Palette& palette, const FixedPalette& row) {
  std::size_t n = 0;
  for (Rgb entry : row.list) palette[n++] = entry;
  for (std::uint8_t red : row.red) {
    for (std::uint8_t green : row.green) {
      for (std::uint8_t blue : row.blue) palette[n++] = {red, green, blue};
    }
  }
  return n;
}

}  // namespace

int LoadFixedPalette(Palette* palette, int* depth, int number) noexcept {
  if (number < 0 || number >= static_cast<int>(std::size(kFixedPalettes))) number = kDefaultFixedPalette;
  const FixedPalette& row = kFixedPalettes[number];
  Palette written{};
  auto count = static_cast<int>(Write(written, row));
  if (number == kGreyLevels) {
    for (auto& entry : written) {
      const auto grey = static_cast<std::uint8_t>(count++);
      entry = {grey, grey, grey};
    }
  }
  if (palette) *palette = written;
  if (depth) *depth = row.depth;
  return count;
}

}  // namespace glyphmotion
