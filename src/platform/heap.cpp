// SPDX-License-Identifier: MIT
#include "platform/heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#endif

namespace glyphmotion {

namespace {

#ifdef __GLIBC__
// Extends the heap by memory in large pages, of which nothing is used yet: frames of a usual animation then cost a
// quarter of the time to clear. More would be wasted on tables that are hardly touched.
void BeginWithLargePages() noexcept {
#ifdef MADV_HUGEPAGE
  constexpr int kLarge = 16 << 20, kAsked = 4 << 20;
  mallopt(M_TOP_PAD, kLarge - kAsked);
  if (void* const memory = std::malloc(kAsked)) {
    constexpr std::uintptr_t kPage = 4096;
    const std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(memory) + kPage - 1) / kPage * kPage;
    madvise(reinterpret_cast<void*>(begin), kLarge - kPage, MADV_HUGEPAGE);
    std::free(memory);
  }
#endif
}
#endif

}  // namespace

void KeepFreedMemory() noexcept {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the largest accepted value
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  mallopt(M_ARENA_MAX, 1);  // a heap for all threads, so that they share what is freed
  BeginWithLargePages();
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
