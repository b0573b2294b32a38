// SPDX-License-Identifier: MIT
#include "platform/run_state.h"

#include <exception>

namespace glyphmotion {
namespace {

struct Current {
  RunState* run = nullptr;
  RandomGenerator* random = nullptr;  ///< null: the run's
};
constinit thread_local Current current;

std::uint64_t NextNumber() noexcept {
  static constinit std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

RunState::RunState() noexcept : number_(NextNumber()) {}

RunState::~RunState() {
  for (Node* node = last_.load(); node;) {
    Node* earlier = node->earlier;
    node->destroy(node);
    node = earlier;
  }
}

std::size_t RunState::NewSlot() noexcept {
  static constinit std::atomic<std::size_t> count{0};
  const std::size_t slot = count++;
  if (slot >= kMostMembers) std::terminate();  // raise kMostMembers
  return slot;
}

void* RunState::Keep(std::size_t slot, Node* node, void* value, void (*destroy)(Node*)) noexcept {
  node->destroy = destroy;
  void* other = nullptr;
  if (!slots_[slot].compare_exchange_strong(other, value, std::memory_order_acq_rel)) {
    destroy(node);
    return other;
  }
  node->earlier = last_.load(std::memory_order_relaxed);
  while (!last_.compare_exchange_weak(node->earlier, node, std::memory_order_acq_rel)) {
  }
  return value;
}

RunState& CurrentRun() noexcept { return current.run ? *current.run : ThreadState(); }

RandomGenerator& CurrentRandom() noexcept { return current.random ? *current.random : CurrentRun().random; }

RunScope::RunScope(RunState& run, RandomGenerator* random) noexcept
    : before_(current.run), randomBefore_(current.random) {
  current = {&run, random};
}

RunScope::~RunScope() { current = {before_, randomBefore_}; }

}  // namespace glyphmotion
