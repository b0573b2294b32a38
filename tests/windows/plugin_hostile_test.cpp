// SPDX-License-Identifier: MIT
// Hosts that refuse, that are too old, that hand over garbage, or that do what no host should in the middle of a run.
// The dialog says what there is to say, nothing is left open, and the process lives.
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "plugin_host.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

void AskForQuickEffect(HWND dialog) {
  AskForLittle(dialog);
  Choose(dialog, kEffect, 15);
}

// The dialog still does its work after whatever went before.
void ExpectWorkingTest(HWND dialog) {
  host = {};
  PressTest(dialog);
  EXPECT_EQ(host.ended, 1);
  EXPECT_FALSE(host.images.empty());
}
void ExpectWorkingDialog() {
  host = {};
  EXPECT_EQ(RunDialog(kBothFormats,
                      [](HWND dialog) {
                        AskForQuickEffect(dialog);
                        ExpectWorkingTest(dialog);
                      }),
            1);
}

LRESULT CALLBACK OwnerProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return DefWindowProcA(window, message, wParam, lParam);
}

/// A window of the host's.
struct Owner {
  HWND window;
  Owner() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = OwnerProcedure;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = "TestOwner";
    RegisterClassA(&windowClass);
    window = CreateWindowA("TestOwner", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                           windowClass.hInstance, nullptr);
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  ~Owner() {
    if (IsWindow(window)) DestroyWindow(window);
  }
};

/// Calls `act` once, at the n-th call of an operation.
auto Once(std::uint32_t operation, int n, std::function<void()> act) {
  return [=, left = n](void*, std::uint32_t now, std::uint64_t, std::uint64_t) mutable -> std::optional<std::uint64_t> {
    if (now == operation && --left == 0) act();
    return std::nullopt;
  };
}

// --- Before the dialog ---

TEST(Refused, AHostWithoutATableOrTooOld) {
  EXPECT_EQ(DoBuild(nullptr, nullptr), 0);
  const Owner owner;
  for (const std::uint32_t version : {0x0FFFu, 0u, 0x0F0000u}) {
    HostCallTable table = TableOf(kBothFormats);
    table.version = version;
    std::string text;
    bool owned = false;
    std::thread user([&] {
      const HWND message = WaitForDialog("Glyphmotion #4");
      owned = GetWindow(message, GW_OWNER) == owner.window;
      text = AnswerMessage();
    });
    EXPECT_EQ(DoBuild(owner.window, &table), 0);
    user.join();
    EXPECT_EQ(
        text.find("You need a newer version of Framewright Professional or Framewright Motion to support this plugin."),
        0u);
    EXPECT_TRUE(owned) << "the message is owned by the host's window";
    EXPECT_TRUE(IsWindowEnabled(owner.window));
  }
  EXPECT_TRUE(host.operations.empty());
}

// --- During a run ---

TEST(Hostile, AHostThatThrowsEndsTheDialogAndNothingElse) {
  for (const std::uint32_t operation : {HostOpGetFileDialogSize, HostOpBeforeWork, HostOpStatusText, HostOpProgress,
                                        HostOpNewTask, HostOpAddImage, HostOpEndTask}) {
    host = {};
    host.instead = Once(operation, 1, [] { throw std::runtime_error("the host's own affair"); });
    const HostCallTable table = TableOf(kBothFormats);
    std::thread user([&] {
      if (operation == HostOpGetFileDialogSize) return;  // asked before the dialog shows
      const HWND dialog = WaitForMainDialog();
      AskForQuickEffect(dialog);
      Press(dialog, kBuild);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); })) << operation;
    });
    EXPECT_EQ(DoBuild(nullptr, &table), 1) << operation;
    user.join();
    for (const ReceivedImage& image : host.images) EXPECT_EQ(GlobalFlags(image.handle), UINT{GMEM_INVALID_HANDLE});
  }
  ExpectWorkingDialog();
}

TEST(Hostile, CommandsPostedOrSentDuringARunWaitForItsEnd) {
  for (const std::uint32_t operation : {HostOpProgress, HostOpAddImage, HostOpEndTask}) {
    for (const bool sent : {false, true}) {
      for (const UINT message : {UINT{WM_COMMAND}, UINT{WM_CLOSE}}) {
        host = {};
        EXPECT_EQ(RunDialog(kBothFormats,
                            [&](HWND dialog) {
                              AskForQuickEffect(dialog);
                              host.instead = Once(operation, 3, [=] {
                                const WPARAM command = message == WM_COMMAND ? kCancel : 0;
                                sent ? SendMessageA(dialog, message, command, 0)
                                     : PostMessageA(dialog, message, command, 0);
                              });
                              PressBuild(dialog);
                            }),
                  1);
        EXPECT_EQ(host.ended, 1) << operation;
        EXPECT_EQ(host.Count(HostOpNewTask), 1) << operation;
      }
    }
  }
  ExpectWorkingDialog();
}

void PumpEverything() {
  MSG message;
  for (int i = 0; i < 100 && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

// A progress bar may pump messages, and with them a second click.
TEST(Hostile, AHostThatPumpsMessagesStartsNoRunWithinARun) {
  RunDialog(kBothFormats, [](HWND dialog) {
    AskForQuickEffect(dialog);
    host.instead = [=](void*, std::uint32_t operation, std::uint64_t, std::uint64_t) -> std::optional<std::uint64_t> {
      if (operation != HostOpProgress) return std::nullopt;
      for (const int id : {kTest, kBuild}) PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0);
      PostMessageA(GetDlgItem(dialog, kEffect), CB_SETCURSEL, 3, 0);
      PumpEverything();
      return 1;
    };
    Press(dialog, kBuild);
    WaitUntil([&] { return !IsWindow(dialog); });
  });
  EXPECT_EQ(host.Count(HostOpNewTask) + host.Count(HostOpNewTestTask), 1);
  EXPECT_EQ(host.ended, 1);
  ExpectWorkingDialog();
}

TEST(Hostile, ADialogOrItsOwnerDestroyedInTheMiddleOfARun) {
  const struct {
    bool owners;
    std::uint32_t operation;
    int call;
  } cases[] = {{false, HostOpBeforeWork, 1},
               {false, HostOpProgress, 2},
               {false, HostOpAddImage, 2},
               {false, HostOpEndTask, 1},
               {true, HostOpProgress, 2}};
  for (const auto& [owners, operation, call] : cases) {
    host = {};
    const Owner owner;
    std::atomic<bool> over = false;
    std::thread user([&, owns = owners, when = operation, n = call] {
      const HWND dialog = WaitForMainDialog();
      AskForQuickEffect(dialog);
      host.instead = Once(when, n, [&, dialog] { DestroyWindow(owns ? owner.window : dialog); });
      Command(dialog, kBuild);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); })) << when;
      // Whatever the run still has to say is answered.
      for (; !over; Sleep(10)) {
        if (const HWND message = FindMessage()) PostMessageA(message, WM_COMMAND, IDOK, 0);
      }
    });
    const HostCallTable table = TableOf(kBothFormats);
    EXPECT_EQ(DoBuild(owner.window, &table), 1) << operation;
    over = true;
    user.join();
    for (const ReceivedImage& image : host.images) EXPECT_EQ(GlobalFlags(image.handle), UINT{GMEM_INVALID_HANDLE});
  }
  ExpectWorkingDialog();
}

// From a thread of the host's, by a message that is sent: the dialog's loop gets nothing that would wake it.
TEST(Hostile, AnOwnerDestroyedWhileTheDialogWaits) {
  const Owner owner;
  const HostCallTable table = TableOf(kBothFormats);
  EXPECT_EQ(RunDialog(
                table,
                [&](HWND dialog) {
                  SendMessageA(owner.window, WM_CLOSE, 0, 0);
                  EXPECT_FALSE(IsWindow(dialog));
                },
                owner.window),
            1);
  ExpectWorkingDialog();
}

TEST(Hostile, AHostThatFreesLocksOrShrinksOurImages) {
  using Misuse = void (*)(HGLOBAL);
  const Misuse misuses[] = {[](HGLOBAL image) { GlobalFree(image); }, [](HGLOBAL image) { GlobalLock(image); },
                            [](HGLOBAL image) { GlobalReAlloc(image, 8, GMEM_MOVEABLE); },
                            [](HGLOBAL image) { GlobalUnlock(image); }};
  for (const Misuse misuse : misuses) {
    host = {};
    RunDialog(kPalette, [=](HWND dialog) {
      AskForQuickEffect(dialog);
      host.instead = [=](void*, std::uint32_t operation, std::uint64_t,
                         std::uint64_t b) -> std::optional<std::uint64_t> {
        if (operation != HostOpAddImage) return std::nullopt;
        misuse(reinterpret_cast<HGLOBAL>(reinterpret_cast<const HostImageRecord*>(b)->image));
        return 1;
      };
      PressTest(dialog);
      EXPECT_EQ(host.ended, 1);
    });
  }
  ExpectWorkingDialog();
}

}  // namespace
}  // namespace glyphmotion::test
