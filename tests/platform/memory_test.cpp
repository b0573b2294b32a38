// SPDX-License-Identifier: MIT
#include "platform/memory.h"

#include <gtest/gtest.h>

#include <cstring>

namespace glyphmotion {
namespace {

TEST(Memory, HandleSurvivesGrowthAndNewBytesAreZero) {
  MovableBlock block(AllocateBlock(3));
  std::memset(LockBlock(block.Handle()), 0xAA, 3);
  EXPECT_FALSE(ResizeBlock(block.Handle(), 100)) << "a locked block must not move";
  UnlockBlock(block.Handle());
  ASSERT_TRUE(ResizeBlock(block.Handle(), 1 << 20));
  const auto* bytes = static_cast<const unsigned char*>(LockBlock(block.Handle()));
  EXPECT_EQ(bytes[2], 0xAA);
  for (int i = 3; i < 1 << 20; ++i) ASSERT_EQ(bytes[i], 0);
  UnlockBlock(block.Handle());
}

TEST(Memory, ForeignAndFreedHandlesAreNothing) {
  MovableBlock other(AllocateBlock(8));
  BlockHandle freed = AllocateBlock(8);
  FreeBlock(freed);
  int local = 0;
  for (BlockHandle handle :
       {BlockHandle{nullptr}, freed, BlockHandle{&local}, reinterpret_cast<BlockHandle>(~std::uintptr_t{0})}) {
    EXPECT_EQ(LockBlock(handle), nullptr);
    EXPECT_EQ(BlockSize(handle), 0u);
    EXPECT_EQ(DuplicateBlock(handle), nullptr);
    UnlockBlock(handle);
    FreeBlock(handle);
  }
  EXPECT_EQ(BlockSize(other.Handle()), 8u);
}

TEST(Memory, CountersSeeBlocksAndNestedLocks) {
  const BlockCounters before = LiveBlocks();
  MovableBlock block(AllocateBlock(16));
  LockBlock(block.Handle());
  LockBlock(block.Handle());
  EXPECT_EQ(LiveBlocks().blocks, before.blocks + 1);
  EXPECT_EQ(LiveBlocks().locks, before.locks + 2);
  UnlockBlock(block.Handle());
  block.Reset();
  EXPECT_EQ(LiveBlocks().blocks, before.blocks);
  EXPECT_EQ(LiveBlocks().locks, before.locks);
}

// There before the first block, so destroyed after all that the first block made. Filled when all tests are over; if
// the block could not be freed any more, the program would die at its very end.
MovableBlock ofAStaticObject;
struct FillAtTheEnd : testing::Environment {
  void TearDown() override { ofAStaticObject.Reset(AllocateBlock(4096)); }
};
[[maybe_unused]] const auto* const kFillAtTheEnd = testing::AddGlobalTestEnvironment(new FillAtTheEnd);

TEST(Memory, TheNthAllocationFailsOnce) {
  FailAllocation(2);
  MovableBlock first(AllocateBlock(4));
  EXPECT_TRUE(first);
  EXPECT_FALSE(ResizeBlock(first.Handle(), 8));
  EXPECT_EQ(BlockSize(first.Handle()), 4u);
  EXPECT_TRUE(ResizeBlock(first.Handle(), 8));
  FailAllocation(0);
}

}  // namespace
}  // namespace glyphmotion
