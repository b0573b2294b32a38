// SPDX-License-Identifier: MIT
// The editors behind the main dialog's fills, on real windows: what they leave behind, what becomes of them when the
// dialog below goes, and what a host's picture may be.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "plugin_host.h"
#include "plugin_resources.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

constexpr int kAddTile = 103, kTileSize = 105, kTileGroup = 108;
const char* const kEditors[] = {"Gradient", "Texture", "Matrix"};

/// The first fill of the effect at hand.
HWND FillOf(HWND dialog) {
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    char name[32] = "";
    GetClassNameA(child, name, sizeof name);
    const bool drawn = std::strcmp(name, "GlyphmotionDrawn") == 0;
    if (drawn && IsWindowVisible(child) && (GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP)) return child;
  }
  ADD_FAILURE() << "the effect has no fill";
  return nullptr;
}

/// From the menu of a fill's kinds, by the keyboard.
void ChooseKind(HWND fill, int kind) {
  HWND menu = nullptr;
  PostMessageA(fill, WM_KEYDOWN, VK_DOWN, 1);
  ASSERT_TRUE(WaitUntil([&] { return (menu = FindWindowA("#32768", nullptr)) && IsWindowVisible(menu); }));
  for (int i = 0; i <= kind; ++i) PostMessageA(fill, WM_KEYDOWN, VK_DOWN, 1);
  PostMessageA(fill, WM_KEYDOWN, VK_RETURN, 1);
  WaitUntil([&] { return !IsWindow(menu) || !IsWindowVisible(menu); });
}

/// `editor` counts in kEditors.
HWND OpenEditor(HWND dialog, int editor) {
  const HWND fill = FillOf(dialog);
  ChooseKind(fill, editor + 1);
  PostMessageA(fill, WM_KEYDOWN, VK_SPACE, 1);
  return WaitForDialog(kEditors[editor], IDCANCEL);
}

void CloseEditor(HWND editor, int command) {
  PostMessageA(editor, WM_COMMAND, static_cast<WPARAM>(command), 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(editor); }));
}

TEST(Editors, NothingIsLeftOfThem) {
  const char* wanted = std::getenv("GLYPHMOTION_CYCLES");
  const int cycles = wanted ? std::atoi(wanted) : 3;
  const auto open = [](int times) {
    RunDialog(kBothFormats, [=](HWND dialog) {
      for (int i = 0; i < times; ++i) {
        for (int editor = 0; editor < 3; ++editor) CloseEditor(OpenEditor(dialog, editor), i % 2 ? IDOK : IDCANCEL);
      }
    });
  };
  open(2);
  const Resources before = CountResources();
  open(cycles);
  const Resources after = CountResources();
  ReportResources(3 * cycles, before, after);
  EXPECT_LE(after.drawing, before.drawing);
  EXPECT_LE(after.windows, before.windows);
}

// The host's window is closed, or the dialog itself is told to go, while an editor stands over it.
TEST(Editors, GoWithTheWindowsBelow) {
  for (const bool owners : {true, false}) {
    for (int editor = 0; editor < 3; ++editor) {
      const HWND owner = CreateWindowA("Static", "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                       nullptr, nullptr, nullptr);
      const HostCallTable table = TableOf(kBothFormats);
      const auto user = [&](HWND dialog) {
        const HWND window = OpenEditor(dialog, editor);
        if (owners) {
          SendMessageA(owner, WM_CLOSE, 0, 0);
          EXPECT_FALSE(IsWindow(window) || IsWindow(dialog));
        } else {
          SendMessageA(dialog, WM_COMMAND, kCancel, 0);
          CloseEditor(window, IDOK);
        }
      };
      EXPECT_EQ(RunDialog(table, user, owner), 1) << kEditors[editor];
      if (IsWindow(owner)) DestroyWindow(owner);
    }
  }
  host = {};
  RunDialog(kBothFormats, [](HWND dialog) {
    Type(dialog, kText, "Hi");
    Type(dialog, kSize, "12");
    PressTest(dialog);
  });
  EXPECT_EQ(host.ended, 1);
}

TEST(Editors, EscapeAndTheSystemMenuCloseThem) {
  RunDialog(kBothFormats, [](HWND dialog) {
    for (int editor = 0; editor < 3; ++editor) {
      const HWND escaped = OpenEditor(dialog, editor);
      PressKey(escaped, IDCANCEL, VK_ESCAPE);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(escaped); })) << kEditors[editor];
      const HWND closed = OpenEditor(dialog, editor);
      PostMessageA(closed, WM_SYSCOMMAND, SC_CLOSE, 0);
      EXPECT_TRUE(WaitUntil([&] { return !IsWindow(closed); })) << kEditors[editor];
      EXPECT_TRUE(IsWindow(dialog) && IsWindowEnabled(dialog));
    }
  });
}

}  // namespace
}  // namespace glyphmotion::test
