// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "image/fixed_palettes.h"

namespace glyphmotion {
namespace {

TEST(FixedPalettes, CountsDepthsAndCornersAreAsListed) {
  const struct {
    int number, count, depth, at;
    Rgb entry;
  } rows[] = {
      {0, 2, 1, 1, {255, 255, 255}}, {1, 16, 4, 8, {192, 192, 192}},     {2, 32, 5, 3, {0, 85, 255}},
      {3, 64, 6, 6, {0, 85, 170}},   {4, 128, 7, 37, {85, 36, 85}},      {5, 216, 8, 215, {255, 255, 255}},
      {6, 256, 8, 72, {72, 72, 0}},  {7, 256, 8, 72, {73, 73, 0}},       {8, 256, 8, 200, {200, 200, 200}},
      {9, 8, 3, 6, {0, 255, 255}},   {10, 256, 8, 255, {255, 255, 255}}, {-1, 256, 8, 1, {0, 0, 85}},
  };
  for (const auto& row : rows) {
    Palette palette;
    palette.fill({9, 9, 9});
    int depth = 0;
    EXPECT_EQ(LoadFixedPalette(&palette, &depth, row.number), row.count) << row.number;
    EXPECT_EQ(LoadFixedPalette(nullptr, nullptr, row.number), row.count) << row.number;
    EXPECT_EQ(depth, row.depth) << row.number;
    EXPECT_EQ(palette[static_cast<std::size_t>(row.at)], row.entry) << row.number;
    for (std::size_t i = static_cast<std::size_t>(row.count); i < 256; ++i) {
      EXPECT_EQ(palette[i], Rgb{}) << row.number << " keeps something past its entries";
    }
  }
}

}  // namespace
}  // namespace glyphmotion
