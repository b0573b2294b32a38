// SPDX-License-Identifier: MIT
#include "platform/memory.h"

#include <cstring>

namespace glyphmotion {

BlockHandle DuplicateBlock(BlockHandle block) noexcept {
  const std::size_t size = BlockSize(block);
  if (!size) return nullptr;
  const void* source = LockBlock(block);
  if (!source) return nullptr;
  BlockHandle copy = AllocateBlock(size);
  if (copy) {
    void* target = LockBlock(copy);
    if (target) {
      std::memcpy(target, source, size);
      UnlockBlock(copy);
    } else {
      FreeBlock(copy);
      copy = nullptr;
    }
  }
  UnlockBlock(block);
  return copy;
}

}  // namespace glyphmotion
