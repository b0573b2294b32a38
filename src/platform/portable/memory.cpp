// SPDX-License-Identifier: MIT
// Movable blocks on the heap, behind a table of slots. A handle is a slot number and the slot's generation, so that
// handles of freed blocks and foreign handles are recognised. The table only grows, in chunks that never move: handles
// are looked up without a lock, and only allocating and freeing take one.
// The frames of a long or large animation can need gigabytes, of which a run uses a few at a time. Once the blocks have
// filled kHeapLimit, large ones are paged: a block leaves the process's memory with its last lock.
#include "platform/memory.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include "platform/heap.h"
#include "platform/portable/paged_memory.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

struct Slot {
  std::atomic<std::uint32_t> live{0};  ///< the generation while there is a block, otherwise 0
  std::atomic<std::uint32_t> locks{0};
  std::uint32_t generation = 1;  ///< of the next block
  std::uint32_t nextFree = 0;    ///< number of the slot below on the stack of free ones; 0: none
  void* bytes = nullptr;
  std::size_t size = 0;
  std::uint64_t run = 0;  ///< number of the run that made the block
  bool paged = false;     ///< otherwise on the heap
};

// A handle has as many bits as a pointer: a quarter of a million blocks and 14 bits of generation where that is 32.
constexpr unsigned kNumberBits = sizeof(void*) == 8 ? 32 : 18;
constexpr unsigned kGenerationBits = 8 * sizeof(void*) - kNumberBits;
constexpr std::uint32_t kLastNumber = std::uint32_t{0xFFFFFFFF} >> (32 - kNumberBits);
constexpr std::uint32_t kLastGeneration = std::uint32_t{0xFFFFFFFF} >> (32 - kGenerationBits);

// Chunk k holds the slots from number 2^(k+8) on, as many again.
constexpr unsigned kFirstChunkBits = 8, kChunks = 32 - kFirstChunkBits;
constexpr std::uint32_t kFirstNumber = 1u << kFirstChunkBits;

constexpr std::size_t kHeapLimit = std::size_t{384} << 20;
constexpr std::size_t kSmallestPaged = std::size_t{256} << 10;

struct BlockTable {
  std::mutex mutex;  ///< guards allocating and freeing
  std::array<std::atomic<Slot*>, kChunks> chunks{};
  std::uint32_t count = 0;  ///< slots made
  std::uint32_t firstFree = 0;
  std::atomic<std::size_t> onHeap{0};  ///< bytes of all blocks there
};

// Never destroyed: a static object of the application may free its blocks after all other static objects are destroyed.
constinit BlockTable table;

/// The slot of a number from 1, whose chunk must exist.
Slot* SlotAt(std::uint32_t number) {
  const std::uint32_t place = number - 1 + kFirstNumber;
  const auto chunk = static_cast<unsigned>(std::bit_width(place)) - 1 - kFirstChunkBits;
  Slot* slots = chunk < kChunks ? table.chunks[chunk].load(std::memory_order_acquire) : nullptr;
  return slots ? slots + (place - (kFirstNumber << chunk)) : nullptr;
}

/// A free slot's number; 0 when out of memory. Requires the lock.
std::uint32_t TakeFreeSlot() {
  if (const std::uint32_t number = table.firstFree) {
    table.firstFree = SlotAt(number)->nextFree;
    return number;
  }
  const std::uint32_t number = table.count + 1, place = number - 1 + kFirstNumber;
  const auto chunk = static_cast<unsigned>(std::bit_width(place)) - 1 - kFirstChunkBits;
  if (chunk >= kChunks || number > kLastNumber) return 0;
  if (!table.chunks[chunk].load(std::memory_order_relaxed)) {
    Slot* slots = new (std::nothrow) Slot[kFirstNumber << chunk];
    if (!slots) return 0;
    table.chunks[chunk].store(slots, std::memory_order_release);
  }
  ++table.count;
  return number;
}

BlockHandle HandleOf(std::uint32_t number, std::uint32_t generation) {
  return reinterpret_cast<BlockHandle>((std::uintptr_t{generation} << kNumberBits) | std::uintptr_t{number});
}

std::uint32_t NumberOf(BlockHandle handle) {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle)) & kLastNumber;
}

Slot* SlotOf(BlockHandle handle) {
  const std::uint32_t number = NumberOf(handle);
  const auto generation = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle) >> kNumberBits);
  Slot* slot = number && generation ? SlotAt(number) : nullptr;
  return slot && slot->live.load(std::memory_order_acquire) == generation ? slot : nullptr;
}

struct Memory {
  void* bytes = nullptr;
  bool paged = false;
};

/// Empty when out of memory.
Memory TakeMemory(std::size_t bytes, bool zeroed) {
  if (bytes >= kSmallestPaged && table.onHeap.load(std::memory_order_relaxed) + bytes > kHeapLimit) {
    if (void* paged = AllocatePaged(bytes)) return {paged, true};
  }
  void* heap = zeroed ? std::calloc(bytes ? bytes : 1, 1) : std::malloc(bytes ? bytes : 1);
  if (heap) PreferLargePages(heap, bytes);
  if (heap) table.onHeap.fetch_add(bytes, std::memory_order_relaxed);
  return {heap, false};
}

void GiveBack(Memory memory, std::size_t bytes) {
  if (memory.paged) return FreePaged(memory.bytes, bytes);
  if (memory.bytes) table.onHeap.fetch_sub(bytes, std::memory_order_relaxed);
  std::free(memory.bytes);
}

template <typename Counts>
BlockCounters Count(Counts counts) noexcept {
  const std::lock_guard lock(table.mutex);
  BlockCounters counters;
  for (std::uint32_t number = 1; number <= table.count; ++number) {
    const Slot& slot = *SlotAt(number);
    if (!slot.live.load(std::memory_order_acquire) || !counts(slot)) continue;
    ++counters.blocks;
    counters.locks += slot.locks.load(std::memory_order_relaxed);
  }
  return counters;
}

BlockHandle MakeBlock(std::size_t bytes, bool zeroed) noexcept {
  if (!MayAllocate()) return nullptr;
  const Memory memory = TakeMemory(bytes, zeroed);
  if (!memory.bytes) return nullptr;
  const std::uint64_t run = CurrentRun().Number();
  const std::lock_guard lock(table.mutex);
  const std::uint32_t number = TakeFreeSlot();
  if (!number) {
    GiveBack(memory, bytes);
    return nullptr;
  }
  Slot& slot = *SlotAt(number);
  slot.bytes = memory.bytes;
  slot.paged = memory.paged;
  slot.size = bytes;
  slot.run = run;
  slot.locks.store(0, std::memory_order_relaxed);
  slot.live.store(slot.generation, std::memory_order_release);
  return HandleOf(number, slot.generation);
}

}  // namespace

BlockHandle AllocateBlock(std::size_t bytes) noexcept { return MakeBlock(bytes, true); }

BlockHandle AllocateUnsetBlock(std::size_t bytes) noexcept { return MakeBlock(bytes, false); }

bool ResizeBlock(BlockHandle block, std::size_t bytes) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot || slot->locks.load(std::memory_order_relaxed) || !MayAllocate()) return false;
  if (slot->paged) {
    const Memory memory = TakeMemory(bytes, true);
    if (!memory.bytes) return false;
    std::memcpy(memory.bytes, slot->bytes, std::min(bytes, slot->size));
    GiveBack({slot->bytes, true}, slot->size);
    slot->bytes = memory.bytes;
    slot->paged = memory.paged;
  } else {
    void* memory = std::realloc(slot->bytes, bytes ? bytes : 1);
    if (!memory) return false;
    if (bytes > slot->size) std::memset(static_cast<char*>(memory) + slot->size, 0, bytes - slot->size);
    table.onHeap.fetch_add(bytes - slot->size, std::memory_order_relaxed);  // modulo 2^64
    slot->bytes = memory;
  }
  slot->size = bytes;
  return true;
}

void* LockBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot) return nullptr;
  slot->locks.fetch_add(1, std::memory_order_relaxed);
  return slot->bytes;
}

void UnlockBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot) return;
  std::uint32_t locks = slot->locks.load(std::memory_order_relaxed);
  while (locks && !slot->locks.compare_exchange_weak(locks, locks - 1, std::memory_order_relaxed)) {
  }
  if (locks == 1 && slot->paged) PageOut(slot->bytes, slot->size);
}

std::size_t BlockSize(BlockHandle block) noexcept {
  const Slot* slot = SlotOf(block);
  return slot ? slot->size : 0;
}

void FreeBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot) return;
  Memory memory;
  std::size_t bytes = 0;
  {
    const std::lock_guard lock(table.mutex);
    memory = {slot->bytes, slot->paged};
    bytes = slot->size;
    slot->live.store(0, std::memory_order_release);
    slot->bytes = nullptr;
    slot->size = 0;
    slot->generation = slot->generation == kLastGeneration ? 1 : slot->generation + 1;
    slot->nextFree = table.firstFree;
    table.firstFree = NumberOf(block);
  }
  GiveBack(memory, bytes);
}

BlockCounters LiveBlocks() noexcept {
  return Count([](const Slot&) { return true; });
}

BlockCounters LiveBlocksOf(const RunState& run) noexcept {
  return Count([number = run.Number()](const Slot& slot) { return slot.run == number; });
}

}  // namespace glyphmotion
