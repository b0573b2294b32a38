// SPDX-License-Identifier: MIT
#include "plugin_resources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "plugin_host.h"

namespace glyphmotion::test {
namespace {

// A Static in the looks of a manifest keeps its font and its picture in a block of this size, which Wine 8 never frees.
constexpr DWORD kStaticsBlock = 24;

// Once in some hundred dialogs the threads' library keeps the event that it starts a thread with, which is the test's
// own here.
constexpr SIZE_T kLateHandles = 2;

SIZE_T staticsMade = 0;

LRESULT CALLBACK OnWindow(int code, WPARAM window, LPARAM parameter) {
  char name[8] = "";
  if (code == HCBT_CREATEWND && GetClassNameA(reinterpret_cast<HWND>(window), name, sizeof name) &&
      lstrcmpiA(name, "Static") == 0) {
    ++staticsMade;
  }
  return CallNextHookEx(nullptr, code, window, parameter);
}

BOOL CALLBACK CountOwn(HWND window, LPARAM count) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == GetCurrentProcessId()) ++*reinterpret_cast<SIZE_T*>(count);
  return TRUE;
}

void CountBlocks(HANDLE heap, Resources& count) {
  PROCESS_HEAP_ENTRY entry{};
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) ++(entry.cbData == kStaticsBlock ? count.staticsBlocks : count.blocks);
  }
  HeapUnlock(heap);
}

SIZE_T CountHandles() {
  DWORD count = 0, flags = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &count) && count) return count;
  for (std::uintptr_t i = 4; i < 0x4000; i += 4) count += GetHandleInformation(reinterpret_cast<HANDLE>(i), &flags);
  return count;
}

}  // namespace

StaticsCount::StaticsCount() : hook_(SetWindowsHookExA(WH_CBT, OnWindow, nullptr, GetCurrentThreadId())) {}
StaticsCount::~StaticsCount() { UnhookWindowsHookEx(hook_); }

// Wine counts neither drawing objects nor menus nor handles, but knows the first two by the lower half of their handles
// and gives handles from the lowest number on, so that all of them can be tried.
Resources CountResources() {
  host = {};
  Resources count;
  count.drawing = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const bool tries = !count.drawing;
  for (std::uintptr_t i = 1; i < 0x10000; ++i) {
    if (tries && GetObjectType(reinterpret_cast<HGDIOBJ>(i))) ++count.drawing;
    if (IsMenu(reinterpret_cast<HMENU>(i))) ++count.menus;
  }
  EnumWindows(CountOwn, reinterpret_cast<LPARAM>(&count.windows));
  count.handles = CountHandles();
  count.staticsMade = staticsMade;
  HANDLE heaps[64];
  const DWORD heapCount = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  for (DWORD i = 0; i < heapCount; ++i) CountBlocks(heaps[i], count);
  return count;
}

void ReportResources(int dialogs, const Resources& before, const Resources& after) {
  const auto number = [](SIZE_T count) { return static_cast<unsigned>(count); };
  std::printf(
      "After %d dialogs: drawing objects %u, then %u; windows %u, then %u; menus %u, then %u; handles %u, then %u; "
      "blocks %u, then %u; of Statics %u, then %u, for %u made.\n",
      dialogs, number(before.drawing), number(after.drawing), number(before.windows), number(after.windows),
      number(before.menus), number(after.menus), number(before.handles), number(after.handles), number(before.blocks),
      number(after.blocks), number(before.staticsBlocks), number(after.staticsBlocks),
      number(after.staticsMade - before.staticsMade));
}

void ExpectNothingLeft(const Resources& before, const Resources& after) {
  EXPECT_LE(after.drawing, before.drawing);
  EXPECT_LE(after.windows, before.windows);
  EXPECT_LE(after.menus, before.menus);
  EXPECT_LE(after.handles, before.handles + kLateHandles);
  EXPECT_LE(after.blocks, before.blocks);
  EXPECT_LE(after.staticsBlocks, before.staticsBlocks + after.staticsMade - before.staticsMade);
}

}  // namespace glyphmotion::test
