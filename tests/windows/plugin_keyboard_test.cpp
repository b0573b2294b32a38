// SPDX-License-Identifier: MIT
// The main dialog and its editors by the keyboard alone, and drags that something else interrupts.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

#include "effects/effect_table.h"
#include "plugin_host.h"
#include "plugin_user.h"

namespace glyphmotion::test {
namespace {

constexpr int kSimple = 17, kFill = 100, kOutline = 106, kShadowDirection = 120;

void GiveFocus(HWND dialog, HWND control) {
  SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

std::vector<HWND> VisibleChildren(HWND dialog) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child)) children.push_back(child);
  }
  return children;
}

// --- Tab ---

std::set<HWND> TabStops(HWND dialog) {
  std::set<HWND> stops;
  for (const HWND child : VisibleChildren(dialog)) {
    if ((GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP) && IsWindowEnabled(child)) stops.insert(child);
  }
  return stops;
}

/// Once round by the system's own order.
std::vector<HWND> TabOrder(HWND dialog, HWND first) {
  std::vector<HWND> order;
  HWND at = first;
  do {
    order.push_back(at);
    at = GetNextDlgTabItem(dialog, at, FALSE);
  } while (at && at != first && order.size() < 200);
  return order;
}

/// Once round by the key.
std::vector<HWND> RoundByTab(HWND dialog, HWND first) {
  GiveFocus(dialog, first);
  std::vector<HWND> order;
  do {
    order.push_back(FocusOf(dialog));
    PressKey(dialog, 0, VK_TAB);
  } while (FocusOf(dialog) != first && order.size() < 200);
  return order;
}

TEST(Keyboard, TabGoesThroughTheDialogAsItIsReadAndBack) {
  RunDialog(kBothFormats, [](HWND dialog) {
    const HWND first = GetDlgItem(dialog, kText);
    for (int effect = 0; effect < kEffectCount; ++effect) {
      Choose(dialog, kEffect, effect);
      const std::vector<HWND> order = TabOrder(dialog, first);
      EXPECT_EQ(std::set<HWND>(order.begin(), order.end()), TabStops(dialog)) << "effect " << effect;
      for (std::size_t i = 1; i < order.size(); ++i) {
        RECT before, place;
        GetWindowRect(order[i - 1], &before);
        GetWindowRect(order[i], &place);
        EXPECT_TRUE(place.left >= before.left || place.top >= before.top)
            << "back from " << GetDlgCtrlID(order[i - 1]) << " to " << GetDlgCtrlID(order[i]) << ", effect " << effect;
      }
    }
    const std::vector<HWND> order = TabOrder(dialog, first);
    EXPECT_EQ(RoundByTab(dialog, first), order);
    std::vector<HWND> back{first};
    back.insert(back.end(), order.rbegin(), order.rend() - 1);
    const KeyHeldFor shift(dialog, VK_SHIFT, VK_LSHIFT);
    EXPECT_EQ(RoundByTab(dialog, first), back);
  });
}

// --- Menus and names by key ---

HWND OpenMenu() {
  HWND menu = nullptr;
  EXPECT_TRUE(WaitUntil([&] { return (menu = FindWindowA("#32768", nullptr)) && IsWindowVisible(menu); }));
  return menu;
}

void CloseMenu(HWND menu, HWND control) {
  PostMessageA(control, WM_KEYDOWN, VK_ESCAPE, 1);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(menu) || !IsWindowVisible(menu); }));
}

/// Opens at the control, wherever the pointer is.
void ExpectMenuAt(HWND control) {
  SetCursorPos(1, 1);
  PostMessageA(control, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(control), -1);
  const HWND menu = OpenMenu();
  RECT place{}, around{}, shared{};
  GetWindowRect(menu, &place);
  GetWindowRect(control, &around);
  InflateRect(&around, 4, 4);
  EXPECT_TRUE(IntersectRect(&shared, &place, &around)) << "control " << GetDlgCtrlID(control);
  CloseMenu(menu, control);
}

TEST(Keyboard, MenuKeyAndF2ActOnTheSelectedEntry) {
  constexpr int kList = 102, kMultiColour = 119, kFountain = 120;
  RunDialog(kBothFormats, [](HWND dialog) {
    for (const int editor : {0, 1, 2}) {
      const HWND window = OpenEditor(dialog, editor);
      if (editor == 0) Press(window, kMultiColour);
      const HWND control = GetDlgItem(window, editor == 0 ? kFountain : kList);
      GiveFocus(window, control);
      SendMessageA(control, LB_SETCURSEL, 0, 0);
      ExpectMenuAt(control);
      if (editor == 1) {
        PostMessageA(control, WM_KEYDOWN, VK_F2, 1);
        EXPECT_NE(AnswerMessage().find("cannot be edited"), std::string::npos) << "a shipped name stays";
      }
      CloseEditor(window, IDCANCEL);
    }
  });
}

// --- Return and Escape ---

TEST(Keyboard, ReturnBuildsAndEscapeLeavesFromEveryKindOfControl) {
  for (const int id : {+kText, +kEffect, +kBold, kFill, kOutline, kShadowDirection}) {
    for (const int key : {VK_RETURN, VK_ESCAPE}) {
      host = {};
      RunDialog(kBothFormats, [&](HWND dialog) {
        AskForLittle(dialog);
        Choose(dialog, kEffect, kSimple);
        Type(dialog, 112, "2");  // frames
        GiveFocus(dialog, GetDlgItem(dialog, id));
        PressKey(dialog, 0, key);
        EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); })) << "control " << id << ", key " << key;
      });
      EXPECT_EQ(host.ended, key == VK_RETURN ? 1 : -1) << "control " << id;
      EXPECT_EQ(host.Count(HostOpPickColor), 0);
    }
  }
}

TEST(Keyboard, InAnOpenListReturnAndEscapeCloseTheList) {
  RunDialog(kBothFormats, [](HWND dialog) {
    const HWND combo = GetDlgItem(dialog, kEffect);
    const auto isOpen = [&] { return SendMessageA(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; };
    for (const int key : {VK_RETURN, VK_ESCAPE}) {
      Choose(dialog, kEffect, kSimple);
      GiveFocus(dialog, combo);
      SendMessageA(combo, CB_SHOWDROPDOWN, TRUE, 0);
      ASSERT_TRUE(isOpen());
      PressKey(dialog, 0, VK_DOWN);
      PressKey(dialog, 0, key);
      EXPECT_FALSE(isOpen());
      ASSERT_TRUE(IsWindow(dialog)) << key;
      // Whichever is chosen then, its options show.
      const int chosen = SelectionOf(dialog, kEffect);
      const auto shown = VisibleChildren(dialog);
      Choose(dialog, kEffect, 20);
      Choose(dialog, kEffect, chosen);
      EXPECT_EQ(VisibleChildren(dialog), shown) << key;
    }
    EXPECT_EQ(host.Count(HostOpNewTask), 0);
    PressKey(dialog, kEffect, VK_ESCAPE);
    EXPECT_TRUE(WaitUntil([&] { return !IsWindow(dialog); }));
  });
}

// --- Drags ---

void Mouse(HWND control, UINT message, int x, int y) {
  PostMessageA(control, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(x, y));
  Settle(GetParent(control));
}

HWND CaptureOf(HWND dialog) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info.hwndCapture;
}

/// How the mouse is let go of.
enum class End { Released, Cancelled, Taken, Behind };
constexpr End kThefts[] = {End::Cancelled, End::Taken, End::Behind};

void TakeMouse(HWND dialog) {
  const DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
  AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
  SetCapture(dialog);
  ReleaseCapture();
  AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
}

/// Another program's window comes to the front, and goes again.
void ComeBetween(HWND dialog) {
  const HWND other =
      CreateWindowA("Static", "Other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
  SetForegroundWindow(other);
  EXPECT_TRUE(WaitUntil([&] { return CaptureOf(dialog) == nullptr; }));
  SetForegroundWindow(dialog);
  DestroyWindow(other);
}

void Steal(HWND control, End end) {
  if (end == End::Cancelled) SendMessageA(control, WM_CANCELMODE, 0, 0);
  if (end == End::Taken) TakeMouse(GetParent(control));
  if (end == End::Behind) ComeBetween(GetParent(control));
  EXPECT_EQ(CaptureOf(GetParent(control)), nullptr) << "control " << GetDlgCtrlID(control);
}

/// Presses at one place, moves to another, and ends. After a theft the person goes on unaware: moves and lets go.
void Drag(HWND control, POINT from, POINT to, End end) {
  Mouse(control, WM_LBUTTONDOWN, from.x, from.y);
  Mouse(control, WM_MOUSEMOVE, to.x, to.y);
  if (end == End::Released) return Mouse(control, WM_LBUTTONUP, to.x, to.y);
  Steal(control, end);
  Mouse(control, WM_MOUSEMOVE, to.x + 30, to.y + 9);
  Mouse(control, WM_LBUTTONUP, to.x + 30, to.y + 200);
}

POINT MiddleOf(HWND control) {
  RECT place;
  GetClientRect(control, &place);
  return {place.right / 2, place.bottom / 2};
}

/// The document of a dialog in which the same things were dragged, with the same end.
std::string DocumentAfterDrags(End end) {
  constexpr int kMultiColour = 119, kPreview = 105, kFountain = 120;
  const std::string path = "C:\\glyphmotion drags.GM4";
  std::filesystem::remove(path);
  ForgetSettings();
  RunDialog(kBothFormats, [&](HWND dialog) {
    Choose(dialog, kEffect, kSimple);
    const HWND picker = GetDlgItem(dialog, kShadowDirection);
    Drag(picker, {4, 4}, MiddleOf(picker), end);
    const HWND gradient = OpenEditor(dialog, 0);
    const HWND preview = GetDlgItem(gradient, kPreview), fountain = GetDlgItem(gradient, kFountain);
    const POINT middle = MiddleOf(preview);
    Drag(preview, middle, {middle.x + 20, middle.y + 12}, end);
    Press(gradient, kMultiColour);
    constexpr int kBarLeft = 8, kBarWidth = 181, kMarker = 0x40;  // the second of the first fountain
    const int x = kBarLeft + kMarker * kBarWidth / 255;
    Drag(fountain, {x, 7}, {x + 11, 7}, end);
    CloseEditor(gradient, IDOK);
    Command(dialog, kSaveAs);
    GivePath("Save", path);
    Settle(dialog);
  });
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  std::filesystem::remove(path);
  return text.str();
}

TEST(Drags, OneThatIsInterruptedStaysWhereItWasAndNothingMovesLater) {
  const std::string released = DocumentAfterDrags(End::Released);
  EXPECT_NE(released.find("\nSDWDIR120=0\n"), std::string::npos) << "the picker takes the press";
  for (const End end : kThefts) EXPECT_EQ(DocumentAfterDrags(end), released) << static_cast<int>(end);
}

TEST(Drags, AFillThatLosesTheMouseOpensNothing) {
  RunDialog(kBothFormats, [](HWND dialog) {
    const HWND fill = FillOf(dialog);
    RECT place;
    GetClientRect(fill, &place);
    for (const int x : {10, static_cast<int>(place.right) - 5}) {
      for (const End end : kThefts) Drag(fill, {x, 5}, {x, 6}, end);
    }
    EXPECT_EQ(FindWindowA("#32768", nullptr), nullptr) << "its menu";
    EXPECT_TRUE(IsWindowEnabled(dialog)) << "its editor";
  });
}

}  // namespace
}  // namespace glyphmotion::test
