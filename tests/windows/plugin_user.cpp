// SPDX-License-Identifier: MIT
#include "plugin_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace glyphmotion::test {
namespace {

constexpr int kMessageText = 0xFFFF;  // the text of a message box
constexpr DWORD kTimeout = 60000;     // milliseconds
constexpr DWORD kLookAgain = 10;

struct Search {
  const char* title;
  int control;
  HWND found;
};

// Of a dialog only: a window's thread is asked for its title, and that of another window may not answer.
BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  char title[64] = "", name[32] = "";
  GetWindowThreadProcessId(window, &process);
  GetClassNameA(window, name, sizeof name);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window) || std::strcmp(name, "#32770") != 0) return TRUE;
  GetWindowTextA(window, title, sizeof title);
  if (std::strncmp(title, search.title, std::strlen(search.title)) != 0) return TRUE;
  if (search.control && !GetDlgItem(window, search.control)) return TRUE;
  search.found = window;
  return FALSE;
}

HWND FindDialog(const char* title, int control) {
  Search search{title, control, nullptr};
  EnumWindows(LookAt, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

// Whatever the user left, a message box or the dialog, is closed until the dialog is gone.
void Leave(HWND dialog) {
  for (DWORD waited = 0; IsWindow(dialog); waited += kLookAgain) {
    if (waited > kTimeout) {
      std::printf("The dialog does not close.\n");
      std::exit(2);
    }
    if (const HWND message = FindMessage()) {
      PostMessageA(message, WM_COMMAND, IDOK, 0);
    } else if (waited % 200 == 0) {
      PostMessageA(dialog, WM_COMMAND, kCancel, 0);
    }
    Sleep(kLookAgain);
  }
}

void SetKeys(const KeyHeldFor& held, BYTE state) {
  AttachThreadInput(GetCurrentThreadId(), held.thread, TRUE);
  BYTE keys[256] = {};
  keys[held.key] = keys[held.leftKey] = state;
  SetKeyboardState(keys);
  AttachThreadInput(GetCurrentThreadId(), held.thread, FALSE);
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds) {
  const ULONGLONG start = GetTickCount64();
  for (DWORD pause = 1; !holds(); pause = std::min(pause + 1, kLookAgain)) {
    if (GetTickCount64() - start > kTimeout) return false;
    Sleep(pause);
  }
  return true;
}

HWND WaitForDialog(const char* title, int control) {
  HWND found = nullptr;
  if (WaitUntil([&] { return (found = FindDialog(title, control)) != nullptr; })) return found;
  std::printf("No dialog \"%s\" with control %d came.\n", title, control);
  std::exit(2);
}

HWND WaitForMainDialog() {
  const HWND dialog = WaitForDialog("Glyphmotion #4", kEffect);
  Settle(dialog);
  return dialog;
}

int RunDialog(const HostCallTable& table, const std::function<void(HWND dialog)>& user, HWND owner) {
  std::thread thread([&] {
    const HWND dialog = WaitForMainDialog();
    user(dialog);
    Leave(dialog);
  });
  const int result = DoBuild(owner, &table);
  thread.join();
  return result;
}

int RunDialog(std::uint32_t flags, const std::function<void(HWND dialog)>& user) {
  return RunDialog(TableOf(flags), user);
}

HWND FindMessage() { return FindDialog("", kMessageText); }

std::string AnswerMessage(int button) {
  const HWND message = WaitForDialog("", kMessageText);
  const std::string text = TextOf(message, kMessageText);
  PostMessageA(message, WM_COMMAND, static_cast<WPARAM>(button), 0);
  WaitUntil([&] { return !IsWindow(message); });
  return text;
}

void Press(HWND dialog, int id) { SendDlgItemMessageA(dialog, id, BM_CLICK, 0, 0); }

void Command(HWND dialog, int id, int code) {
  PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, code), code ? reinterpret_cast<LPARAM>(GetDlgItem(dialog, id)) : 0);
}

// The button posts a command, which posts another: a message sent after both finds the run over.
void PressBuild(HWND dialog) {
  Press(dialog, kBuild);
  WaitUntil([&] { return !IsWindow(dialog) || host.ended >= 0; });
}

void PressTest(HWND dialog) {
  Press(dialog, kTest);
  WaitUntil([&] { return !IsWindow(dialog) || host.ended >= 0; });
  Settle(dialog);
}

void Choose(HWND dialog, int id, int index) {
  const HWND combo = GetDlgItem(dialog, id);
  SendMessageA(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(combo));
}

void Type(HWND dialog, int id, const std::string& text) {
  SendDlgItemMessageA(dialog, id, EM_SETSEL, 0, -1);
  SendDlgItemMessageA(dialog, id, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

void PressKey(HWND dialog, int id, int key) {
  const HWND control = id ? GetDlgItem(dialog, id) : FocusOf(dialog);
  PostMessageA(control, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
  PostMessageA(control, WM_KEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001));
  Settle(dialog);
}

void AskForLittle(HWND dialog) {
  Type(dialog, kText, "Hi");
  Type(dialog, kSize, "12");
}

std::string TextOf(HWND dialog, int id) {
  char text[1024] = "";
  GetDlgItemTextA(dialog, id, text, sizeof text);
  return text;
}

bool IsChecked(HWND dialog, int id) { return SendDlgItemMessageA(dialog, id, BM_GETCHECK, 0, 0) == BST_CHECKED; }
void SetChecked(HWND dialog, int id, bool checked) {
  if (IsChecked(dialog, id) != checked) Press(dialog, id);
}
bool IsEnabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)); }
int SelectionOf(HWND dialog, int id) { return static_cast<int>(SendDlgItemMessageA(dialog, id, CB_GETCURSEL, 0, 0)); }

HWND FocusOf(HWND dialog) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
  return info.hwndFocus;
}

KeyHeldFor::KeyHeldFor(HWND window, int either, int left)
    : thread(GetWindowThreadProcessId(window, nullptr)), key(either), leftKey(left) {
  SetKeys(*this, 0x80);
}
KeyHeldFor::~KeyHeldFor() { SetKeys(*this, 0); }

// A file that is to be replaced is asked about first.
void GivePath(const char* title, const std::string& path) {
  constexpr int kNameCombo = 0x47C, kNameEdit = 0x480;
  const HWND dialog = WaitForDialog(title);
  HWND name = nullptr;
  WaitUntil([&] {
    name = GetDlgItem(dialog, kNameCombo);
    return name || (name = GetDlgItem(dialog, kNameEdit));
  });
  SendMessageA(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  PostMessageA(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntil([&] {
    const HWND question = FindMessage();
    if (!IsWindow(dialog)) return true;
    if (question) PostMessageA(question, WM_COMMAND, IDYES, 0);
    return false;
  })) << title;
}

void ChooseFromMenu(HWND control, int index) {
  HWND menu = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (menu = FindWindowA("#32768", nullptr)) && IsWindowVisible(menu); }));
  for (int i = 0; i <= index; ++i) PostMessageA(control, WM_KEYDOWN, VK_DOWN, 1);
  PostMessageA(control, WM_KEYDOWN, VK_RETURN, 1);
  WaitUntil([&] { return !IsWindow(menu) || !IsWindowVisible(menu); });
}

// --- The editors behind the fills ---

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

HWND OpenEditor(HWND dialog, int editor) {
  const HWND fill = FillOf(dialog);
  PostMessageA(fill, WM_KEYDOWN, VK_DOWN, 1);
  ChooseFromMenu(fill, editor + 1);
  PostMessageA(fill, WM_KEYDOWN, VK_SPACE, 1);
  return WaitForDialog(kEditors[editor], IDCANCEL);
}

void CloseEditor(HWND editor, int command) {
  PostMessageA(editor, WM_COMMAND, static_cast<WPARAM>(command), 0);
  EXPECT_TRUE(WaitUntil([&] { return !IsWindow(editor); }));
}

void StartGroup(HWND editor, int addButton) {
  const KeyHeldFor shift(editor, VK_SHIFT, VK_LSHIFT);
  PostMessageA(editor, WM_COMMAND, static_cast<WPARAM>(addButton), 0);
  CloseEditor(WaitForDialog("New ", IDOK), IDOK);
}

// Sent messages overtake posted ones, so a mark is posted, to an edit, and waited for. A command may post another one,
// which may post a third, hence the rounds.
void Settle(HWND dialog) {
  const HWND edit = FindWindowExA(dialog, nullptr, "Edit", nullptr);
  for (int round = 0; round < 3; ++round) {
    SendMessageA(edit, EM_SETMODIFY, FALSE, 0);
    PostMessageA(edit, EM_SETMODIFY, TRUE, 0);
    WaitUntil([&] { return !IsWindow(edit) || SendMessageA(edit, EM_GETMODIFY, 0, 0); });
  }
}

// Posted messages overtake painting.
void WaitForPainting(HWND dialog) {
  const auto look = [](HWND child, LPARAM waits) -> BOOL {
    const bool due = GetUpdateRect(child, nullptr, FALSE);
    if (due) *reinterpret_cast<bool*>(waits) = true;
    return !due;
  };
  WaitUntil([&] {
    bool waits = GetUpdateRect(dialog, nullptr, FALSE);
    if (!waits) EnumChildWindows(dialog, look, reinterpret_cast<LPARAM>(&waits));
    return !waits;
  });
}

}  // namespace glyphmotion::test
