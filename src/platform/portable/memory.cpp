// SPDX-License-Identifier: MIT
// Movable blocks on the heap, behind a table of slots. A handle is a slot number and the slot's generation, so that a
// handle of a freed block, or one that never was ours, is recognised.
#include "platform/memory.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

namespace glyphmotion {
namespace {

struct Slot {
  void* bytes = nullptr;
  std::size_t size = 0;
  std::uint32_t locks = 0;
  std::uint32_t generation = 1;
  bool live = false;
};

struct BlockTable {
  std::vector<Slot> slots;
  std::vector<std::uint32_t> free;
  BlockCounters counters;
  std::uint64_t failAt = 0;
  std::uint64_t asked = 0;
};

// Never destroyed: a static object of a program that uses the library may free its blocks after everything else is
// gone.
BlockTable& Table() {
  static BlockTable& table = *new BlockTable;
  return table;
}

BlockHandle HandleOf(std::uint32_t index, std::uint32_t generation) {
  return reinterpret_cast<BlockHandle>((std::uintptr_t{generation} << 32) | (std::uintptr_t{index} + 1));
}

Slot* SlotOf(BlockHandle handle) {
  const auto value = reinterpret_cast<std::uintptr_t>(handle);
  const auto number = static_cast<std::uint32_t>(value);
  auto& slots = Table().slots;
  if (number == 0 || number > slots.size()) return nullptr;
  Slot& slot = slots[number - 1];
  return slot.live && slot.generation == static_cast<std::uint32_t>(value >> 32) ? &slot : nullptr;
}

bool MayAllocate() {
  auto& table = Table();
  return ++table.asked != table.failAt;
}

}  // namespace

BlockHandle AllocateBlock(std::size_t bytes) noexcept {
  if (!MayAllocate()) return nullptr;
  auto& table = Table();
  void* memory = std::calloc(bytes ? bytes : 1, 1);
  if (!memory) return nullptr;
  try {
    if (table.free.empty()) {
      table.slots.emplace_back();
      table.free.reserve(table.slots.capacity());
      table.free.push_back(static_cast<std::uint32_t>(table.slots.size() - 1));
    }
  } catch (const std::bad_alloc&) {
    std::free(memory);
    return nullptr;
  }
  const std::uint32_t index = table.free.back();
  table.free.pop_back();
  Slot& slot = table.slots[index];
  slot.bytes = memory;
  slot.size = bytes;
  slot.locks = 0;
  slot.live = true;
  ++table.counters.blocks;
  return HandleOf(index, slot.generation);
}

bool ResizeBlock(BlockHandle block, std::size_t bytes) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot || slot->locks || !MayAllocate()) return false;
  void* memory = std::realloc(slot->bytes, bytes ? bytes : 1);
  if (!memory) return false;
  if (bytes > slot->size) std::memset(static_cast<char*>(memory) + slot->size, 0, bytes - slot->size);
  slot->bytes = memory;
  slot->size = bytes;
  return true;
}

void* LockBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot) return nullptr;
  ++slot->locks;
  ++Table().counters.locks;
  return slot->bytes;
}

void UnlockBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot || !slot->locks) return;
  --slot->locks;
  --Table().counters.locks;
}

std::size_t BlockSize(BlockHandle block) noexcept {
  const Slot* slot = SlotOf(block);
  return slot ? slot->size : 0;
}

void FreeBlock(BlockHandle block) noexcept {
  Slot* slot = SlotOf(block);
  if (!slot) return;
  auto& table = Table();
  std::free(slot->bytes);
  table.counters.locks -= slot->locks;
  --table.counters.blocks;
  slot->bytes = nullptr;
  slot->size = 0;
  slot->locks = 0;
  slot->live = false;
  ++slot->generation;
  table.free.push_back(static_cast<std::uint32_t>(slot - table.slots.data()));
}

BlockCounters LiveBlocks() noexcept { return Table().counters; }

void FailAllocation(std::uint64_t n) noexcept {
  Table().failAt = n;
  Table().asked = 0;
}

std::uint64_t AllocationsAsked() noexcept { return Table().asked; }

}  // namespace glyphmotion
