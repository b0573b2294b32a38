// SPDX-License-Identifier: MIT
#include "platform/run_state.h"

namespace glyphmotion {

RunState& ThreadState() noexcept {
  thread_local RunState state;
  return state;
}

}  // namespace glyphmotion
