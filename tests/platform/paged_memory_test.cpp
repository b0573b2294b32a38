// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <vector>

#include "platform/memory.h"

namespace glyphmotion {
namespace {

std::size_t ResidentBytes() {
  std::ifstream file("/proc/self/statm");
  std::size_t all = 0, resident = 0;
  file >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Blocks that nobody touches take no room themselves, so the limit is reached at no cost.
TEST(Memory, PastAFewHundredMegabytesUnlockedBlocksLeaveTheProcessAndKeepTheirBytes) {
  std::vector<MovableBlock> full;
  for (int i = 0; i < 24; ++i) full.emplace_back(AllocateBlock(std::size_t{16} << 20));
  constexpr std::size_t size = std::size_t{8} << 20;
  const std::size_t before = ResidentBytes();
  std::vector<MovableBlock> blocks;
  for (int i = 0; i < 6; ++i) {
    auto* bytes = static_cast<unsigned char*>(LockBlock(blocks.emplace_back(AllocateBlock(size)).Handle()));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(std::count(bytes, bytes + size, 0), static_cast<std::ptrdiff_t>(size));
    std::memset(bytes, i + 1, size);
    UnlockBlock(blocks.back().Handle());
  }
  EXPECT_LT(ResidentBytes(), before + 2 * size) << "six of them were written";
  for (const std::size_t other : {size + 4096, std::size_t{100}, size}) {
    ASSERT_TRUE(ResizeBlock(blocks[2].Handle(), other));
    const auto* bytes = static_cast<const unsigned char*>(LockBlock(blocks[2].Handle()));
    EXPECT_EQ(bytes[99], 3);
    EXPECT_EQ(bytes[other - 1], other == 100 ? 3 : 0);
    UnlockBlock(blocks[2].Handle());
  }
  full.clear();
  for (const std::size_t i : {0u, 5u}) {
    const MovableBlock copy(DuplicateBlock(blocks[i].Handle()));
    const auto* bytes = static_cast<const unsigned char*>(LockBlock(copy.Handle()));
    EXPECT_EQ(std::count(bytes, bytes + size, i + 1), static_cast<std::ptrdiff_t>(size));
    UnlockBlock(copy.Handle());
  }
}

}  // namespace
}  // namespace glyphmotion
