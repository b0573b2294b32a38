// SPDX-License-Identifier: MIT
#include "platform/stretch_face.h"

#include <gtest/gtest.h>

namespace glyphmotion {
namespace {

struct Face {
  int width, height;
  std::vector<std::uint8_t> pixels = std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height), 7);
  DrawRequest Request() { return {pixels.data(), width, height, std::ptrdiff_t{3} * width}; }
  std::uint8_t& At(int x, int y, int channel = 0) {
    return pixels[static_cast<std::size_t>(3 * (y * width + x) + channel)];
  }
};

TEST(StretchFace, RepeatsPixelsByWholeFactorsAndSharesThemByOthers) {
  Face small{3, 2};
  for (int i = 0; i < 18; ++i) small.pixels[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i * 14);
  Face twice{6, 4}, same{3, 2}, half{5, 3};
  StretchFace(small.Request(), twice.Request());
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 6; ++x) {
      for (int c = 0; c < 3; ++c) EXPECT_EQ(twice.At(x, y, c), small.At(x / 2, y / 2, c));
    }
  }
  StretchFace(small.Request(), same.Request());
  EXPECT_EQ(same.pixels, small.pixels);
  // 2 pixels over 3: the middle one is half of each.
  Face pair{2, 1}, three{3, 1};
  pair.At(0, 0) = 100;
  pair.At(1, 0) = 200;
  StretchFace(pair.Request(), three.Request());
  EXPECT_TRUE(three.At(0, 0) == 100 && three.At(1, 0) == 150 && three.At(2, 0) == 200);
  // One colour stays that colour at any size, smaller too.
  Face plain{7, 5}, other{4, 9};
  StretchFace(plain.Request(), other.Request());
  for (const std::uint8_t byte : other.pixels) EXPECT_EQ(byte, 7);
}

}  // namespace
}  // namespace glyphmotion
