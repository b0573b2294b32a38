// SPDX-License-Identifier: MIT
#include "platform/heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#endif

namespace glyphmotion {

void KeepFreedMemory() noexcept {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the largest accepted value
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  mallopt(M_TOP_PAD, 1 << 20);
#endif
}

void PreferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)
  constexpr std::size_t kFewest = std::size_t{32} << 20;
  constexpr std::uintptr_t kPage = 4096;
  if (bytes < kFewest) return;
  const auto first = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t begin = (first + kPage - 1) / kPage * kPage, end = (first + bytes) / kPage * kPage;
  madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

}  // namespace glyphmotion
