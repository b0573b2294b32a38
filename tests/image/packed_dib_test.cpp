// SPDX-License-Identifier: MIT
#include "image/packed_dib.h"

#include <gtest/gtest.h>

namespace glyphmotion {
namespace {

TEST(PackedDib, DepthsAreRoundedToStoredForms) {
  const struct {
    int depth, bits;
  } rows[] = {{0, 32}, {1, 1}, {2, 4}, {4, 4}, {5, 8}, {8, 8}, {9, 24}, {24, 24}, {25, 32}};
  for (const auto& row : rows) {
    const PackedDib dib = BlankDib(9, 2, nullptr, row.depth);
    const DibView view(dib);
    ASSERT_TRUE(view) << row.depth;
    EXPECT_EQ(view.Bits(), row.bits) << row.depth;
    EXPECT_EQ(view.Header().biClrUsed, row.bits < 9 ? 1u << row.bits : 0u);
    EXPECT_EQ(BlockSize(dib.Handle()), 40 + DibTableBytes(row.bits) + view.Stride() * 2);
  }
  EXPECT_EQ(DibStride(1, 24), 4u);
  EXPECT_EQ(DibStride(9, 1), 4u);
}

TEST(PackedDib, PixelsOutsideAreReadAsOnesAndWrittenNowhere) {
  for (int depth : {1, 4, 8, 24, 32}) {
    const PackedDib dib = BlankDib(5, 3, &GreyRamp(), depth);
    const DibView view(dib);
    const struct { int x, y; } outside[] = {{-1, 0}, {5, 0}, {0, 3}, {0, -1}, {INT32_MIN, 0}, {0, INT32_MAX}};
    for (const auto& place : outside) {
      view.SetPixel(place.x, place.y, 0xFFFFFFFF);
      EXPECT_EQ(view.GetPixel(place.x, place.y), 0xFFFFFFFF);
    }
    for (int y = 0; y < 3; ++y) {
      for (int x = 0; x < 5; ++x) EXPECT_EQ(view.GetPixel(x, y), 0u) << depth;
    }
  }
}

TEST(PackedDib, PixelsKeepTheirValueAndTheirNeighbours) {
  const struct {
    int depth;
    std::uint32_t mask;
  } rows[] = {{1, 1}, {4, 15}, {8, 255}, {24, 0xFFFFFF}, {32, 0xFFFFFFFF}};
  for (const auto& row : rows) {
    const PackedDib dib = BlankDib(11, 4, nullptr, row.depth);
    const DibView view(dib);
    const auto value = [&](int x, int y) {
      return (0x9E3779B9u * static_cast<std::uint32_t>(x * 7 + y * 131 + 1)) & row.mask;
    };
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 11; ++x) view.SetPixel(x, y, value(x, y));
    }
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 11; ++x) EXPECT_EQ(view.GetPixel(x, y), value(x, y)) << row.depth;
    }
  }
}

TEST(PackedDib, ImpossibleSizesGiveNothing) {
  EXPECT_FALSE(BlankDib(0, 5, nullptr, 24));
  EXPECT_FALSE(BlankDib(5, -1, nullptr, 24));
  EXPECT_FALSE(BlankDib(1 << 20, 1 << 20, nullptr, 24));
  EXPECT_FALSE(BlankDib(16384, 16384, nullptr, 24)) << "more than 512 MiB";
  EXPECT_FALSE(BlankDib(INT32_MAX, 1, nullptr, 32));
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

TEST(PackedDib, ViewsRefuseHeadersThatLie) {
  PackedDib dib = BlankDib(4, 4, nullptr, 8);
  {
    LockedBlock<DibHeader> header(dib.Handle());
    header->biWidth = 5000;
  }
  EXPECT_FALSE(DibView(dib));
  {
    LockedBlock<DibHeader> header(dib.Handle());
    header->biWidth = 4;
    header->biHeight = -4;
  }
  EXPECT_FALSE(DibView(dib));
  EXPECT_EQ(LiveBlocks().locks, 0u);
}

TEST(PackedDib, TrimKeepsTheColumnsThatHoldSomething) {
  const struct {
    std::vector<int> columns;
    int sides, width;
  } rows[] = {{{3, 6}, kTrimLeft | kTrimRight, 4}, {{3, 6}, kTrimLeft, 7},          {{3, 6}, kTrimRight, 7},
              {{4}, kTrimLeft | kTrimRight, 2},    {{}, kTrimLeft | kTrimRight, 2}, {{0}, kTrimLeft | kTrimRight, 2}};
  for (const auto& row : rows) {
    const PackedDib mask = BlankMask(10, 2);
    for (int x : row.columns) DibView(mask).SetPixel(x, 1, 9);
    const PackedDib trimmed = TrimColumns(mask, row.sides);
    EXPECT_EQ(DibView(trimmed).Width(), row.width);
    if (!row.columns.empty() && row.sides & kTrimLeft) {
      EXPECT_EQ(DibView(trimmed).GetPixel(0, 1), 9u);
    }
  }
}

TEST(PackedDib, RegionsCopyOnlyWhatLiesInBoth) {
  const PackedDib from = SolidDib(4, 4, 0x112233), to = BlankDib(4, 4, nullptr, 24);
  const DibView source(from), target(to);
  CopyRegion(target, -2, 3, source, 1, 1, 100, 100);
  int painted = 0;
  for (int i = 0; i < 16; ++i) painted += target.GetPixel(i % 4, i / 4) == 0x112233;
  EXPECT_EQ(painted, 1) << "x: columns 3 of the source at 0; y: one row";
  CopyRegion(target, INT32_MAX, 0, source, INT32_MIN, 0, INT32_MAX, 4);
}

TEST(Colour, DivisionBy255IsExact) {
  for (int v = 0; v <= 255 * 255; ++v) ASSERT_EQ(Div255(v), v / 255);
}

}  // namespace
}  // namespace glyphmotion
