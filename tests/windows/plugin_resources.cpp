// SPDX-License-Identifier: MIT
#include "plugin_resources.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace glyphmotion::test {
namespace {

BOOL CALLBACK CountOwn(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId()) ++*reinterpret_cast<DWORD*>(count);
  return TRUE;
}

// Of a heap, those that are larger than what Wine itself loses: 24 bytes a control in the looks of a manifest, and some
// of 40.
SIZE_T CountBlocks(HANDLE heap) {
  constexpr DWORD kWineLoses = 64;
  SIZE_T count = 0;
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) count += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) && entry.cbData > kWineLoses ? 1 : 0;
  HeapUnlock(heap);
  return count;
}

}  // namespace

// Wine does not count drawing objects and windows, but knows objects by the lower half of their handles, so that all of
// them can be tried.
Resources CountResources() {
  Resources count{GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                  GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), 0};
  if (!count.drawing) {
    for (std::uintptr_t i = 1; i < 0x10000; ++i) count.drawing += GetObjectType(reinterpret_cast<HGDIOBJ>(i)) ? 1 : 0;
  }
  if (!count.windows) EnumWindows(CountOwn, reinterpret_cast<LPARAM>(&count.windows));
  HANDLE heaps[64];
  const DWORD heapCount = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  for (DWORD i = 0; i < heapCount; ++i) count.blocks += CountBlocks(heaps[i]);
  return count;
}

void ReportResources(int dialogs, const Resources& before, const Resources& after) {
  std::printf("After %d dialogs: drawing objects %u, then %u; windows %u, then %u; blocks %u, then %u.\n", dialogs,
              static_cast<unsigned>(before.drawing), static_cast<unsigned>(after.drawing),
              static_cast<unsigned>(before.windows), static_cast<unsigned>(after.windows),
              static_cast<unsigned>(before.blocks), static_cast<unsigned>(after.blocks));
}

}  // namespace glyphmotion::test
