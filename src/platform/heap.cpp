// SPDX-License-Identifier: MIT
#include "platform/heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace glyphmotion {

void KeepFreedMemory() noexcept {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the largest accepted value
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  mallopt(M_TOP_PAD, 1 << 20);
#endif
}

}  // namespace glyphmotion
