// SPDX-License-Identifier: MIT
// Work that lacks memory, at each of its allocations.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "platform/memory.h"

namespace glyphmotion {

/// Runs `work`, which says whether it succeeded, with its first block allocation failing, then with its second, until
/// a run asks for fewer: it has to fail exactly when an allocation does, and to leave no block and no lock behind.
/// `least`: what a whole run asks for at least.
inline void ExpectEachAllocationMayFail(const std::function<bool()>& work, std::uint64_t least = 1) {
  const BlockCounters before = LiveBlocks();
  std::uint64_t n = 0;
  for (bool done = false; !done;) {
    FailAllocation(++n);
    done = work();
    const bool failed = n <= AllocationsAsked();
    FailAllocation(0);
    ASSERT_EQ(done, !failed) << "allocation " << n;
    ASSERT_EQ(LiveBlocks().blocks, before.blocks) << "allocation " << n;
    ASSERT_EQ(LiveBlocks().locks, before.locks) << "allocation " << n;
  }
  EXPECT_GT(n, least);
}

}  // namespace glyphmotion
