// SPDX-License-Identifier: MIT
#include "platform/memory.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

/// Works in pieces, between which it checks whether the run is to end; returns false then.
bool CopyUnlessEnding(void* target, const void* source, std::size_t size) {
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  for (std::size_t done = 0; done < size; done += kPiece) {
    if (EndRequested()) return false;
    std::memcpy(static_cast<char*>(target) + done, static_cast<const char*>(source) + done,
                std::min(kPiece, size - done));
  }
  return true;
}

}  // namespace

BlockHandle DuplicateBlock(BlockHandle block) noexcept {
  const std::size_t size = BlockSize(block);
  if (!size) return nullptr;
  const void* source = LockBlock(block);
  if (!source) return nullptr;
  BlockHandle copy = AllocateUnsetBlock(size);
  if (copy) {
    void* target = LockBlock(copy);
    const bool copied = target && CopyUnlessEnding(target, source, size);
    if (target) UnlockBlock(copy);
    if (!copied) FreeBlock(std::exchange(copy, nullptr));
  }
  UnlockBlock(block);
  return copy;
}

bool MayAllocate() noexcept {
  AllocationCountdown& countdown = CurrentRun().Allocations();
  const std::uint64_t n = countdown.asked.fetch_add(1, std::memory_order_relaxed) + 1;
  return n != countdown.failAt.load(std::memory_order_relaxed);
}

void FailAllocation(std::uint64_t n) noexcept {
  AllocationCountdown& countdown = CurrentRun().Allocations();
  countdown.failAt = n;
  countdown.asked = 0;
}

std::uint64_t AllocationsAsked() noexcept { return CurrentRun().Allocations().asked; }

}  // namespace glyphmotion
