// SPDX-License-Identifier: MIT
// The person before a dialog in memory is its driver.
#include "frame_user.h"

namespace {

constexpr int kTest = 24, kEffect = 58;

void Drive(GlyphmotionDialog* dialog, void* context) {
  const int effects = *static_cast<const int*>(context);
  for (int i = 0; i < effects; ++i) {
    GlyphmotionSelect(dialog, kEffect, i);
    GlyphmotionPress(dialog, kTest);
  }
}

}  // namespace

void TestEveryEffect(const HostCallTable& table, int effects, const std::atomic<int>&) {
  GlyphmotionSetDriver(Drive, &effects);
  PLUGIN16DoBuild(nullptr, &table);
  GlyphmotionSetDriver(nullptr, nullptr);
}
