// SPDX-License-Identifier: MIT
// Movable blocks of the system's heap, whose handles a host can lock. A table knows the blocks that are ours, with the
// size that was asked for (the system may round up) and their locks; so a handle of a freed block is recognised. Other
// handles may be blocks that a host made for us: they are let through when the system knows them as movable.
#include "platform/memory.h"

#include <cstring>
#include <new>
#include <unordered_map>

#include "platform/win32/windows_headers.h"

namespace glyphmotion {
namespace {

struct Entry {
  std::size_t size = 0;
  std::uint32_t locks = 0;
  bool ours = false;  ///< made here; otherwise a host's block, listed while we hold it locked
};

struct BlockTable {
  std::unordered_map<BlockHandle, Entry> entries;
  BlockCounters counters;
  std::uint64_t failAt = 0;
  std::uint64_t asked = 0;
};

// Never destroyed: a static object of a program that uses the library may free its blocks after everything else is
// gone. It is only emptied when nothing lives, so that a library that is unloaded leaves no memory behind.
BlockTable& Table() {
  struct Tidy {
    BlockTable* table;
    ~Tidy() {
      if (table->entries.empty()) table->entries = {};
    }
  };
  alignas(BlockTable) static unsigned char storage[sizeof(BlockTable)];
  static const Tidy tidy{new (storage) BlockTable};
  return *tidy.table;
}

bool MayAllocate() {
  auto& table = Table();
  return ++table.asked != table.failAt;
}

Entry* EntryOf(BlockHandle block) {
  auto& entries = Table().entries;
  const auto found = entries.find(block);
  return found == entries.end() ? nullptr : &found->second;
}

// A handle is the address of an entry of the heap's handle table, off by one pointer from its alignment; an address of
// fixed memory, or garbage, hardly ever is. Asking for the flags checks the rest without touching the block.
bool IsHostsBlock(BlockHandle block) {
  const auto value = reinterpret_cast<std::uintptr_t>(block);
  if (value % (2 * sizeof(void*)) != sizeof(void*)) return false;
  const UINT flags = GlobalFlags(block);
  return flags != GMEM_INVALID_HANDLE && !(flags & GMEM_DISCARDED);
}

void ForgetUnlocked(BlockHandle block, const Entry& entry) {
  if (!entry.ours && !entry.locks) Table().entries.erase(block);
}

}  // namespace

BlockHandle AllocateBlock(std::size_t bytes) noexcept {
  if (!MayAllocate()) return nullptr;
  // Of no bytes at all the system would make a discarded block, which cannot be locked.
  const BlockHandle block = GlobalAlloc(GHND, bytes ? bytes : 1);
  if (!block) return nullptr;
  auto& table = Table();
  try {
    table.entries[block] = Entry{bytes, 0, true};
  } catch (const std::bad_alloc&) {
    GlobalFree(block);
    return nullptr;
  }
  ++table.counters.blocks;
  return block;
}

bool ResizeBlock(BlockHandle block, std::size_t bytes) noexcept {
  Entry* entry = EntryOf(block);
  if (!entry || entry->locks || !MayAllocate()) return false;
  if (GlobalReAlloc(block, bytes ? bytes : 1, GMEM_MOVEABLE | GMEM_ZEROINIT) != block) return false;
  const std::size_t before = entry->size;
  entry->size = bytes;
  if (bytes <= before) return true;
  // The system clears what lies past its own, rounded size only.
  if (void* memory = GlobalLock(block)) {
    std::memset(static_cast<char*>(memory) + before, 0, bytes - before);
    GlobalUnlock(block);
  }
  return true;
}

void* LockBlock(BlockHandle block) noexcept try {
  if (!block) return nullptr;
  Entry* entry = EntryOf(block);
  if (!entry) {
    if (!IsHostsBlock(block)) return nullptr;
    entry = &(Table().entries[block] = Entry{GlobalSize(block), 0, false});
  }
  void* memory = GlobalLock(block);
  if (memory) {
    ++entry->locks;
    ++Table().counters.locks;
  }
  ForgetUnlocked(block, *entry);
  return memory;
} catch (const std::bad_alloc&) {
  return nullptr;
}

void UnlockBlock(BlockHandle block) noexcept {
  Entry* entry = EntryOf(block);
  if (!entry || !entry->locks) return;
  GlobalUnlock(block);
  --entry->locks;
  --Table().counters.locks;
  ForgetUnlocked(block, *entry);
}

std::size_t BlockSize(BlockHandle block) noexcept {
  if (!block) return 0;
  const Entry* entry = EntryOf(block);
  if (entry) return entry->size;
  return IsHostsBlock(block) ? GlobalSize(block) : 0;
}

void FreeBlock(BlockHandle block) noexcept {
  if (!block) return;
  auto& table = Table();
  if (const Entry* entry = EntryOf(block)) {
    for (std::uint32_t i = 0; i < entry->locks; ++i) GlobalUnlock(block);
    table.counters.locks -= entry->locks;
    if (entry->ours) --table.counters.blocks;
    table.entries.erase(block);
  } else if (!IsHostsBlock(block)) {
    return;
  }
  GlobalFree(block);
}

BlockCounters LiveBlocks() noexcept { return Table().counters; }

void FailAllocation(std::uint64_t n) noexcept {
  Table().failAt = n;
  Table().asked = 0;
}

std::uint64_t AllocationsAsked() noexcept { return Table().asked; }

}  // namespace glyphmotion
