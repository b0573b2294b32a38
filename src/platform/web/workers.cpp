// SPDX-License-Identifier: MIT
// A module has one thread: every loop is the caller's own.
#include "platform/workers.h"

#include "platform/run_state.h"

namespace glyphmotion {

struct Workers::State {};

Workers::Workers(int) {}
Workers::~Workers() = default;

int Workers::Lanes() const noexcept { return 1; }

bool Workers::InOrder(int count, const std::function<void(int, int)>& work, const std::function<bool(int)>& take) {
  for (int i = 0; i < count; ++i) {
    work(0, i);
    if (!take(i)) return false;
  }
  return true;
}

Workers& RunWorkers() { return CurrentRun().Member<Workers>(); }

void SetRunThreads(int) {}

}  // namespace glyphmotion
