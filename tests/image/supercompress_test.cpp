// SPDX-License-Identifier: MIT
#include "image/supercompress.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "random_images.h"

namespace glyphmotion {
namespace {

constexpr Colour kKey = 0x00ABCDEF;

bool Unchanged(const FrameList& list, int i, int x, int y) {
  return DibView(LockedFrame(list, i)->mask).GetPixel(x, y) == 1;
}

TEST(Supercompress, MasksFollowTheRunningPictureOverAllSizesAndDepths) {
  Dice dice(1);
  for (int round = 0; round < 60; ++round) {
    TestFrames frames;
    const int width = Roll(dice, 1, 40), height = Roll(dice, 1, 6);
    frames.Append(RandomImage(dice, width, height, round % 3 ? 24 : 32, 2));
    for (int i = 1; i < 5; ++i) {
      const bool same = round % 2;
      PackedDib image = same && i % 2 ? PackedDib(DuplicateBlock(LockedFrame(frames.list, i - 1)->image))
                                      : RandomImage(dice, same ? width : Roll(dice, 1, 45),
                                                    same ? height : Roll(dice, 1, 8), round % 5 ? 24 : 32, 2);
      const DibView view(image);
      view.SetPixel(view.Width() - 1, 0, dice());
      frames.Append(std::move(image));
    }
    // The plain twin: the picture shown so far, one pixel at a time.
    PackedDib shownDib(DuplicateBlock(LockedFrame(frames.list, 0)->image));
    const DibView shown(shownDib);
    std::vector<std::vector<std::uint32_t>> expected(5);
    for (int i = 1; i < 5; ++i) {
      const DibView image(LockedFrame(frames.list, i)->image);
      for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
          const std::uint32_t a = shown.GetPixel(x, y), b = image.GetPixel(x, y);
          if (a != b) shown.SetPixel(x, y, b);
          expected[static_cast<std::size_t>(i)].push_back(a == b);
        }
      }
    }
    PackedDib previous;
    std::vector<std::pair<int, int>> steps;
    ASSERT_TRUE(SupercompressFrames(frames.list, kKey, previous, [&](int i, int count) {
      steps.push_back({i, count});
    }));
    EXPECT_EQ(Difference(previous, shownDib), "");
    EXPECT_EQ(steps, (std::vector<std::pair<int, int>>{{0, 5}, {1, 5}, {2, 5}, {3, 5}, {4, 5}}));
    EXPECT_EQ(LockedFrame(frames.list, 0)->mask, nullptr);
    EXPECT_EQ(LockedFrame(frames.list, 0)->transparentIndex, -1);
    for (int i = 1; i < 5; ++i) {
      ASSERT_EQ(LockedFrame(frames.list, i)->transparentIndex, static_cast<std::int32_t>(kKey));
      for (int p = 0; p < width * height; ++p) {
        ASSERT_EQ(Unchanged(frames.list, i, p % width, p / width),
                  expected[static_cast<std::size_t>(i)][static_cast<std::size_t>(p)])
            << "frame " << i << ", round " << round;
      }
    }
  }
}

TEST(Supercompress, AMaskIsAOneBitPictureInBlackAndWhite) {
  TestFrames frames;
  for (int i = 0; i < 2; ++i) frames.Append(SolidDib(33, 2, 5));
  PackedDib previous;
  ASSERT_TRUE(SupercompressFrames(frames.list, kKey, previous, nullptr));
  const LockedFrame frame(frames.list, 1);
  EXPECT_EQ(BlockSize(frame->mask), 48u + 8 * 2);
  const DibView mask(frame->mask);
  ASSERT_EQ(mask.Bits(), 1);
  EXPECT_EQ(mask.Header().biSizeImage, 16u);
  EXPECT_EQ(mask.Header().biClrUsed, 2u);
  EXPECT_EQ(mask.TableEntry(1), (Rgb{255, 255, 255}));
  EXPECT_EQ(mask.Row(0)[3], 0xFF);
  EXPECT_EQ(mask.Row(0)[4], 0x80) << "no bits past the last column";
}

TEST(Supercompress, APixelThatReturnsHasChangedTwice) {
  TestFrames frames;
  for (int i = 0; i < 4; ++i) {
    PackedDib image = SolidDib(4, 1, 1);
    if (i == 2) DibView(image).SetPixel(2, 0, 9);
    frames.Append(std::move(image));
  }
  PackedDib previous;
  ASSERT_TRUE(SupercompressFrames(frames.list, kKey, previous, nullptr));
  EXPECT_TRUE(Unchanged(frames.list, 1, 2, 0));
  EXPECT_FALSE(Unchanged(frames.list, 2, 2, 0));
  EXPECT_FALSE(Unchanged(frames.list, 3, 2, 0));
  EXPECT_TRUE(Unchanged(frames.list, 3, 1, 0));
}

TEST(Supercompress, EveryAllocationMayFailAndNothingLeaks) {
  const auto before = LiveBlocks();
  bool done = false;
  for (std::uint64_t n = 1; !done; ++n) {
    {
      TestFrames frames;
      for (int i = 0; i < 3; ++i) frames.Append(SolidDib(4, 4, 1));
      PackedDib previous;
      FailAllocation(n);
      done = SupercompressFrames(frames.list, kKey, previous, nullptr);
      EXPECT_EQ(done, AllocationsAsked() < n);
      FailAllocation(0);
      if (done) {
        EXPECT_EQ(n, 4u);
      }
    }
    EXPECT_EQ(LiveBlocks().blocks, before.blocks);
    EXPECT_EQ(LiveBlocks().locks, before.locks);
  }
  TestFrames lost;
  lost.Append({});
  PackedDib previous;
  EXPECT_FALSE(SupercompressFrames(lost.list, kKey, previous, nullptr));
}

}  // namespace
}  // namespace glyphmotion
