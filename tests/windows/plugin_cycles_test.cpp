// SPDX-License-Identifier: MIT
// What is left of the system's after many dialogs: nothing. GLYPHMOTION_CYCLES says how many; 12 without it.
#include <gtest/gtest.h>

#include <cstdlib>

#include "plugin_host.h"
#include "plugin_resources.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

constexpr int kCycles = 12, kWarmUp = 4, kReportEvery = 100;

// Every third is cancelled at once, the others show themselves, and test or build.
void Cycle(int i) {
  host = {};
  EXPECT_EQ(RunDialog(i % 2 ? kPalette : kTrueColour,
                      [i](HWND dialog) {
                        if (i % 3 == 0) return;
                        WaitForPainting(dialog);
                        Type(dialog, kText, "Hi");
                        Type(dialog, kSize, "10");
                        Choose(dialog, kEffect, 15);
                        i % 3 == 1 ? PressTest(dialog) : PressBuild(dialog);
                      }),
            1);
}

TEST(Cycles, NothingIsLeftOfManyDialogs) {
  const char* wanted = std::getenv("GLYPHMOTION_CYCLES");
  const int cycles = wanted ? std::atoi(wanted) : kCycles;
  const StaticsCount statics;
  for (int i = 0; i < kWarmUp; ++i) Cycle(i);
  const Resources before = CountResources();
  for (int i = 1; i <= cycles; ++i) {
    Cycle(i);
    if (i % kReportEvery == 0 && i < cycles) ReportResources(i, before, CountResources());
  }
  const Resources after = CountResources();
  ReportResources(cycles, before, after);
  ExpectNothingLeft(before, after);
}

}  // namespace
}  // namespace glyphmotion::test
