// SPDX-License-Identifier: MIT
#include "platform/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

TEST(Workers, TakeTheResultsInOrderWithAnyNumberOfThreads) {
  for (const int threads : {1, 2, 3, 8}) {
    Workers workers(threads);
    ASSERT_EQ(workers.Lanes(), threads);
    RunState run;
    const RunScope scope(run);
    for (const int count : {0, 1, 2, 100}) {
      std::vector<int> made(100), busy(static_cast<std::size_t>(threads)), taken;
      std::atomic<int> wrong = 0, behind = 0;
      const auto work = [&](int lane, int i) {
        wrong += ++busy[static_cast<std::size_t>(lane)] != 1;  // a lane is one thread
        wrong += &CurrentRun() != &run || i - behind > 4 * threads;
        made[static_cast<std::size_t>(i)] = i * i;
        --busy[static_cast<std::size_t>(lane)];
      };
      const auto take = [&](int i) {
        taken.push_back(made[static_cast<std::size_t>(i)]);
        behind = i;
        return true;
      };
      EXPECT_TRUE(workers.InOrder(count, work, take));
      EXPECT_EQ(wrong, 0);
      ASSERT_EQ(taken.size(), static_cast<std::size_t>(count));
      for (int i = 0; i < count; ++i) EXPECT_EQ(taken[static_cast<std::size_t>(i)], i * i);
    }
  }
}

TEST(Workers, ALoopEndsWhereWorkOrTakeFailsAndTheNextIsWhole) {
  for (const int threads : {1, 2, 8}) {
    Workers workers(threads);
    std::vector<int> taken;
    const auto take = [&](int i) { return taken.push_back(i), i < 9; };
    const auto work = [](int, int i) {
      if (i == 7 || i == 8) throw std::runtime_error(std::to_string(i));
    };
    try {
      workers.InOrder(50, work, take);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "7");
    }
    EXPECT_EQ(taken, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    taken.clear();
    EXPECT_FALSE(workers.InOrder(
        50, [](int, int) {}, take));
    EXPECT_EQ(taken.size(), 10u);
    EXPECT_THROW(workers.InOrder(
                     50, [](int, int) {}, [](int) -> bool { throw std::logic_error("take"); }),
                 std::logic_error);
    std::atomic<int> done = 0;
    const auto inner = [&](int, int) {
      workers.InOrder(
          5, [&](int, int) { ++done; }, [](int) { return true; });
    };
    EXPECT_TRUE(workers.InOrder(20, inner, [](int) { return true; }));
    EXPECT_EQ(done, 100);
  }
}

}  // namespace
}  // namespace glyphmotion
