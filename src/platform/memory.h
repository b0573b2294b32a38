// SPDX-License-Identifier: MIT
// Movable memory blocks, which hold every image and most records and cross the host boundary.
//
// A handle survives the block's growth; its bytes may be touched only while it is locked. Locks nest. Blocks are
// zero-filled when made, unless asked otherwise, and where they grow. The null handle is "nothing": locking it gives
// null, freeing it does nothing. Handles that are not live blocks (a host may pass anything) behave like null, though
// the system may reuse the handle of a freed block. Any thread may use any block, and several may lock one at once;
// only a thread that is its sole user may resize or free a block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace glyphmotion {

class RunState;

/// Handle of a movable block; null is "nothing".
using BlockHandle = void*;

/// Handles in records are 64-bit numbers.
inline BlockHandle HandleOf(std::uint64_t word) noexcept {
  return reinterpret_cast<BlockHandle>(static_cast<std::uintptr_t>(word));
}
inline std::uint64_t WordOf(BlockHandle block) noexcept {
  return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(block));
}

/// A new zeroed block of `bytes` bytes (0 is a valid block), owned by the caller; null when out of memory.
BlockHandle AllocateBlock(std::size_t bytes) noexcept;

/// The same with indeterminate bytes, for a caller that writes each byte before it is read: clearing memory that was
/// used before costs as much as filling it.
BlockHandle AllocateUnsetBlock(std::size_t bytes) noexcept;

/// Grows or shrinks an unlocked block, keeping its handle; new bytes are zero. False, and the block unchanged, when out
/// of memory.
bool ResizeBlock(BlockHandle block, std::size_t bytes) noexcept;

/// The block's bytes, or null. Valid until the matching UnlockBlock.
void* LockBlock(BlockHandle block) noexcept;
void UnlockBlock(BlockHandle block) noexcept;

/// Size in bytes; 0 for nothing.
std::size_t BlockSize(BlockHandle block) noexcept;

/// Frees the block, and any locks still on it.
void FreeBlock(BlockHandle block) noexcept;

/// A new block with the same bytes, or null when `block` is null or empty, or when out of memory.
BlockHandle DuplicateBlock(BlockHandle block) noexcept;

/// Counts of live blocks and locks.
struct BlockCounters {
  std::uint64_t blocks = 0;
  std::uint64_t locks = 0;
};
/// Of the whole process. Linear in the number of blocks, so not for hot code.
BlockCounters LiveBlocks() noexcept;
/// Of the blocks that one run has allocated.
BlockCounters LiveBlocksOf(const RunState& run) noexcept;

/// Makes the current run's n-th allocation (or growth) from now on fail, once; n counts from 1, 0 disables it. For
/// tests and --fail-allocation.
void FailAllocation(std::uint64_t n) noexcept;

/// The number of allocations and growths of the current run since the last FailAllocation: the range that a test has to
/// try.
std::uint64_t AllocationsAsked() noexcept;

/// Counts one allocation of the current run; false when it has to fail. For implementations of this header.
bool MayAllocate() noexcept;

/// Owns one block.
class MovableBlock {
 public:
  MovableBlock() = default;
  explicit MovableBlock(BlockHandle handle) noexcept : handle_(handle) {}
  MovableBlock(MovableBlock&& other) noexcept : handle_(other.Release()) {}
  MovableBlock& operator=(MovableBlock&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  ~MovableBlock() { FreeBlock(handle_); }

  explicit operator bool() const noexcept { return handle_ != nullptr; }
  BlockHandle Handle() const noexcept { return handle_; }
  BlockHandle Release() noexcept { return std::exchange(handle_, nullptr); }
  void Reset(BlockHandle handle = nullptr) noexcept { FreeBlock(std::exchange(handle_, handle)); }

 private:
  BlockHandle handle_ = nullptr;
};

/// Locks a block as a T; empty when the block is null or smaller than T.
template <typename T>
class LockedBlock {
 public:
  explicit LockedBlock(BlockHandle handle) noexcept : handle_(handle) {
    if (BlockSize(handle) >= sizeof(T)) data_ = static_cast<T*>(LockBlock(handle));
  }
  LockedBlock(LockedBlock&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)), data_(std::exchange(other.data_, nullptr)) {}
  LockedBlock& operator=(LockedBlock&&) = delete;
  ~LockedBlock() {
    if (data_) UnlockBlock(handle_);
  }

  explicit operator bool() const noexcept { return data_ != nullptr; }
  T* operator->() const noexcept { return data_; }
  T& operator*() const noexcept { return *data_; }
  T* get() const noexcept { return data_; }

 private:
  BlockHandle handle_ = nullptr;
  T* data_ = nullptr;
};

}  // namespace glyphmotion
