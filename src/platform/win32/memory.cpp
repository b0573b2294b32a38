// SPDX-License-Identifier: MIT
// Movable blocks of the system's heap, whose handles a host can lock. A table lists our own blocks, with their
// requested size (the system may round up) and their locks, so handles of freed blocks are recognised. Other handles
// may be blocks that a host allocated for us: they are accepted if the system reports them as movable.
#include "platform/memory.h"

#include <cstring>
#include <new>
#include <unordered_map>

#include "platform/run_state.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {
namespace {

struct Entry {
  std::size_t size = 0;
  std::uint32_t locks = 0;
  bool ours = false;      ///< allocated here; otherwise a host's block, listed while we hold a lock
  std::uint64_t run = 0;  ///< number of the run that allocated the block, or locked the host's
};

struct BlockTable {
  SRWLOCK lock = SRWLOCK_INIT;
  std::unordered_map<BlockHandle, Entry> entries;
};

// Never destroyed: a static object of the application may free its blocks after all other static objects are destroyed.
// It is released whenever no block is alive, so that an unloaded library leaks no memory.
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

/// All functions below require the lock.
class TableLock {
 public:
  TableLock() { AcquireSRWLockExclusive(&Table().lock); }
  TableLock(const TableLock&) = delete;
  TableLock& operator=(const TableLock&) = delete;
  ~TableLock() { ReleaseSRWLockExclusive(&Table().lock); }
};

Entry* EntryOf(BlockHandle block) {
  auto& entries = Table().entries;
  const auto found = entries.find(block);
  return found == entries.end() ? nullptr : &found->second;
}

// A handle is the address of an entry of the heap's handle table, one pointer off its alignment; addresses of fixed
// memory and garbage hardly ever are. GlobalFlags checks the rest without touching the block.
bool IsHostsBlock(BlockHandle block) {
  const auto value = reinterpret_cast<std::uintptr_t>(block);
  if (value % (2 * sizeof(void*)) != sizeof(void*)) return false;
  const UINT flags = GlobalFlags(block);
  return flags != GMEM_INVALID_HANDLE && !(flags & GMEM_DISCARDED);
}

void ForgetUnlocked(BlockHandle block, const Entry& entry) {
  if (!entry.ours && !entry.locks) Table().entries.erase(block);
}

template <typename Counts>
BlockCounters Count(Counts counts) noexcept {
  const TableLock lock;
  BlockCounters counters;
  for (const auto& [block, entry] : Table().entries) {
    if (!counts(entry)) continue;
    if (entry.ours) ++counters.blocks;
    counters.locks += entry.locks;
  }
  return counters;
}

BlockHandle MakeBlock(std::size_t bytes, UINT flags) noexcept {
  if (!MayAllocate()) return nullptr;
  // For zero bytes the system would create a discarded block, which cannot be locked.
  const BlockHandle block = GlobalAlloc(flags, bytes ? bytes : 1);
  if (!block) return nullptr;
  try {
    const TableLock lock;
    Table().entries[block] = Entry{bytes, 0, true, CurrentRun().Number()};
  } catch (const std::bad_alloc&) {
    GlobalFree(block);
    return nullptr;
  }
  return block;
}

}  // namespace

BlockHandle AllocateBlock(std::size_t bytes) noexcept { return MakeBlock(bytes, GHND); }

BlockHandle AllocateUnsetBlock(std::size_t bytes) noexcept { return MakeBlock(bytes, GMEM_MOVEABLE); }

bool ResizeBlock(BlockHandle block, std::size_t bytes) noexcept {
  const TableLock lock;
  Entry* entry = EntryOf(block);
  if (!entry || entry->locks || !MayAllocate()) return false;
  if (GlobalReAlloc(block, bytes ? bytes : 1, GMEM_MOVEABLE | GMEM_ZEROINIT) != block) return false;
  const std::size_t before = entry->size;
  entry->size = bytes;
  if (bytes <= before) return true;
  // The system clears only bytes past its own, rounded size.
  if (void* memory = GlobalLock(block)) {
    std::memset(static_cast<char*>(memory) + before, 0, bytes - before);
    GlobalUnlock(block);
  }
  return true;
}

void* LockBlock(BlockHandle block) noexcept try {
  if (!block) return nullptr;
  const TableLock lock;
  Entry* entry = EntryOf(block);
  if (!entry) {
    if (!IsHostsBlock(block)) return nullptr;
    entry = &(Table().entries[block] = Entry{GlobalSize(block), 0, false, CurrentRun().Number()});
  }
  void* memory = GlobalLock(block);
  if (memory) ++entry->locks;
  ForgetUnlocked(block, *entry);
  return memory;
} catch (const std::bad_alloc&) {
  return nullptr;
}

void UnlockBlock(BlockHandle block) noexcept {
  const TableLock lock;
  Entry* entry = EntryOf(block);
  if (!entry || !entry->locks) return;
  GlobalUnlock(block);
  --entry->locks;
  ForgetUnlocked(block, *entry);
}

std::size_t BlockSize(BlockHandle block) noexcept {
  if (!block) return 0;
  const TableLock lock;
  const Entry* entry = EntryOf(block);
  if (entry) return entry->size;
  return IsHostsBlock(block) ? GlobalSize(block) : 0;
}

void FreeBlock(BlockHandle block) noexcept {
  if (!block) return;
  const TableLock lock;
  if (const Entry* entry = EntryOf(block)) {
    for (std::uint32_t i = 0; i < entry->locks; ++i) GlobalUnlock(block);
    Table().entries.erase(block);
  } else if (!IsHostsBlock(block)) {
    return;
  }
  GlobalFree(block);
}

BlockCounters LiveBlocks() noexcept {
  return Count([](const Entry&) { return true; });
}

BlockCounters LiveBlocksOf(const RunState& run) noexcept {
  return Count([number = run.Number()](const Entry& entry) { return entry.run == number; });
}

}  // namespace glyphmotion
