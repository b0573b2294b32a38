// SPDX-License-Identifier: MIT
// A page's files are in its memory, so nothing can leave it.
#include "platform/portable/paged_memory.h"

namespace glyphmotion {

void* AllocatePaged(std::size_t) noexcept { return nullptr; }
void PageOut(void*, std::size_t) noexcept {}
void FreePaged(void*, std::size_t) noexcept {}

}  // namespace glyphmotion
