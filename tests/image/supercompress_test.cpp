// SPDX-License-Identifier: MIT
#include "image/supercompress.h"

#include <gtest/gtest.h>

#include "random_images.h"

namespace glyphmotion {
namespace {

constexpr Colour kKey = 0x00ABCDEF;

bool Unchanged(const FrameList& list, int i, int x, int y) {
  return DibView(LockedFrame(list, i)->mask).GetPixel(x, y) == 1;
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
