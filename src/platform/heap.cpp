// SPDX-License-Identifier: MIT
#include "platform/heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#endif

namespace glyphmotion {

#ifdef __GLIBC__
namespace {

// For the whole pages of memory that nothing has been written to.
void AdviseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t kPage = 4096;
  const auto first = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t begin = (first + kPage - 1) / kPage * kPage, end = (first + bytes) / kPage * kPage;
  madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

// Extends the heap by memory in large pages, of which nothing is used yet: frames of a usual animation then cost a
// quarter of the time to clear. More would be wasted on tables that are hardly touched.
void BeginWithLargePages() noexcept {
  constexpr int kLarge = 16 << 20, kAsked = 4 << 20;
  mallopt(M_TOP_PAD, kLarge - kAsked);
  if (void* const memory = std::malloc(kAsked)) {
    AdviseLargePages(memory, kLarge);
    std::free(memory);
  }
}

}  // namespace
#endif

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
#ifdef __GLIBC__
  constexpr std::size_t kFewest = std::size_t{32} << 20;
  if (bytes >= kFewest) AdviseLargePages(memory, bytes);
#endif
}

}  // namespace glyphmotion
