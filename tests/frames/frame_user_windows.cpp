// SPDX-License-Identifier: MIT
// The person before a dialog of windows is a thread that sends it what a mouse would.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

#include "frame_user.h"

namespace {

constexpr int kCancel = 2, kTest = 24, kEffect = 58;
constexpr int kTimeout = 60000, kLookAgain = 5;  // milliseconds

template <typename Holds>
void WaitFor(const char* what, Holds holds) {
  for (int waited = 0; !holds(); waited += kLookAgain, Sleep(kLookAgain)) {
    if (waited < kTimeout) continue;
    std::printf("Waited in vain for %s.\n", what);
    std::exit(2);
  }
}

BOOL CALLBACK TakeMainDialog(HWND window, LPARAM found) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window) || !GetDlgItem(window, kEffect)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

void Drive(int effects, const std::atomic<int>& endedTasks) {
  HWND dialog = nullptr;
  WaitFor("the dialog", [&] {
    EnumWindows(TakeMainDialog, reinterpret_cast<LPARAM>(&dialog));
    return dialog != nullptr;
  });
  const HWND combo = GetDlgItem(dialog, kEffect);
  for (int i = 0; i < effects; ++i) {
    const int ended = endedTasks;
    SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(kEffect, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
    SendDlgItemMessageA(dialog, kTest, BM_CLICK, 0, 0);
    WaitFor("the end of a run", [&] { return endedTasks != ended; });
  }
  PostMessageA(dialog, WM_COMMAND, kCancel, 0);
}

}  // namespace

void TestEveryEffect(const HostCallTable& table, int effects, const std::atomic<int>& endedTasks) {
  std::thread user(Drive, effects, std::cref(endedTasks));
  PLUGIN16DoBuild(nullptr, &table);
  user.join();
}
