// SPDX-License-Identifier: MIT
// The system's boxes, over the window of the calling dialog.
#include "platform/shell_ui.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/dialog.h"
#include "platform/run_state.h"
#include "platform/win32/dialog_state.h"
#include "platform/win32/retry.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_headers.h"
// After windows.h:
#include <commdlg.h>

namespace glyphmotion {
namespace {

constexpr int kLongestPath = 1024;
constexpr const char* kProgramTitle = "Glyphmotion #4";

HWND OwnerWindow(Dialog* owner) {
  return owner ? reinterpret_cast<HWND>(static_cast<std::uintptr_t>(WindowOf(*owner))) : GetActiveWindow();
}

// --- File dialogs ---

constexpr UINT kTakeSize = WM_APP + 1;

/// The hook's window is a child of the dialog whose size it remembers. The dialog is resized only once it is shown:
/// before that, it does not lay out its contents.
UINT_PTR CALLBACK SizeFileDialog(HWND window, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    const auto* dialog = reinterpret_cast<const OPENFILENAMEW*>(lParam);
    SetWindowLongPtrW(window, DWLP_USER, dialog->lCustData);
    return 0;
  }
  auto* question = reinterpret_cast<FileQuestion*>(GetWindowLongPtrW(window, DWLP_USER));
  const HWND dialog = GetParent(window);
  if (!question || !dialog) return 0;
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == CDN_INITDONE) {
    PostMessageW(window, kTakeSize, 0, 0);
  }
  if (message == kTakeSize && question->width > 0 && question->height > 0) {
    SetWindowPos(dialog, nullptr, 0, 0, question->width, question->height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  RECT place;
  if (message == WM_DESTROY && GetWindowRect(dialog, &place)) {
    question->width = place.right - place.left;
    question->height = place.bottom - place.top;
  }
  return 0;
}

/// "GM4 files", "*.GM4", each terminated, and one more terminator.
std::wstring FilterOf(const FileQuestion& question) {
  std::wstring filter = WideOf(question.filterName);
  filter += L'\0';
  filter += L"*." + WideOf(question.extension);
  filter += L'\0';
  return filter;
}

// --- Messages ---

DesktopBoxes& Boxes() { return CurrentRun().Member<DesktopBoxes>(); }

bool Ask(Dialog* owner, void* window, const std::string& text, MessageButtons buttons, MessageIcon icon) {
  const MessageQuestion question{kProgramTitle, text, buttons, icon};
  if (const auto show = Boxes().message) {
    if (const auto answer = show(owner, window, question)) return *answer;
  }
  const UINT style = (buttons == MessageButtons::Ok ? MB_OK : MB_YESNO) |
                     (buttons == MessageButtons::YesNoKeep ? MB_DEFBUTTON2 : 0) |
                     (icon == MessageIcon::Question  ? MB_ICONQUESTION
                      : icon == MessageIcon::Warning ? MB_ICONWARNING
                                                     : MB_ICONINFORMATION);
  const HWND above = owner || !window ? OwnerWindow(owner) : static_cast<HWND>(window);
  const int answer = MessageBoxW(above, WideOf(text).c_str(), WideOf(question.title).c_str(), style);
  return answer == IDOK || answer == IDYES;
}

/// The custom colours of the colour chooser.
struct CustomColours {
  COLORREF colours[16];
  CustomColours() { std::fill(std::begin(colours), std::end(colours), 0xFFFFFF); }
};

struct WaitCursor {
  int depth = 0;
  HCURSOR before = nullptr;
};

// --- Menus ---

struct OwnedMenu {
  HMENU handle = CreatePopupMenu();
  OwnedMenu() = default;
  OwnedMenu(const OwnedMenu&) = delete;
  OwnedMenu& operator=(const OwnedMenu&) = delete;
  ~OwnedMenu() { DestroyMenu(handle); }
};

/// Screen coordinates of a position in the control, or of the pointer.
POINT MenuPlace(Dialog* owner, int control, int x, int y) {
  POINT place{};
  if (!owner || !control) {
    GetCursorPos(&place);
    return place;
  }
  const double scale = ScaleOf(*owner);
  place = {std::lround(x * scale), std::lround(y * scale)};
  if (const Control* found = FindControl(*owner, control)) ClientToScreen(found->window, &place);
  return place;
}

}  // namespace

bool ShowMessage(Dialog* owner, const std::string& text, MessageButtons buttons) {
  return Ask(owner, nullptr, text, buttons,
             buttons == MessageButtons::Ok ? MessageIcon::Warning : MessageIcon::Question);
}

void ShowInformation(Dialog* owner, const std::string& text) {
  Ask(owner, nullptr, text, MessageButtons::Ok, MessageIcon::Information);
}

void ShowMessageOver(void* window, const std::string& text) {
  Ask(nullptr, window, text, MessageButtons::Ok, MessageIcon::Warning);
  if (window) UpdateWindow(static_cast<HWND>(window));
}

void SetDesktopBoxes(const DesktopBoxes& boxes) { Boxes() = boxes; }

void Beep(MessageIcon icon) {
  MessageBeep(icon == MessageIcon::Question  ? MB_ICONQUESTION
              : icon == MessageIcon::Warning ? MB_ICONWARNING
                                             : MB_ICONINFORMATION);
}

void CopyToClipboard(Dialog& owner, const std::string& text) {
  const std::wstring wide = WideOf(text);
  const std::size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
  // Without an owner window, another program that opens it likewise could take it over before the data is set.
  const HWND window = OwnerWindow(&owner);
  if (!RetryBriefly([window] { return OpenClipboard(window) != FALSE; })) return;
  EmptyClipboard();
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes);
  void* place = block ? GlobalLock(block) : nullptr;
  if (place) {
    std::memcpy(place, wide.c_str(), bytes);
    GlobalUnlock(block);
  }
  if (block && (!place || !SetClipboardData(CF_UNICODETEXT, block))) GlobalFree(block);  // otherwise the system owns it
  CloseClipboard();
}

std::optional<std::string> AskFile(Dialog* owner, FileQuestion& question) {
  const std::wstring filter = FilterOf(question), folder = WideOf(question.folder),
                     extension = WideOf(question.extension), name = WideOf(question.fileName);
  wchar_t path[kLongestPath] = L"";
  std::copy_n(name.data(), std::min<std::size_t>(name.size(), kLongestPath - 1), path);
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = OwnerWindow(owner);
  dialog.lpstrFilter = filter.c_str();
  dialog.lpstrFile = path;
  dialog.nMaxFile = kLongestPath;
  dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  dialog.lpstrDefExt = extension.c_str();
  dialog.lCustData = reinterpret_cast<LPARAM>(&question);
  dialog.lpfnHook = SizeFileDialog;
  dialog.Flags = OFN_EXPLORER | OFN_ENABLEHOOK | OFN_ENABLESIZING | OFN_HIDEREADONLY | OFN_NOCHANGEDIR |
                 (question.save ? OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST : OFN_FILEMUSTEXIST);
  const BOOL chosen = question.save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
  if (!chosen) return std::nullopt;
  return NarrowOf(path);
}

std::optional<std::uint32_t> AskColour(Dialog* owner, std::uint32_t start) {
  CHOOSECOLORW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = OwnerWindow(owner);
  dialog.rgbResult = start & 0xFFFFFF;
  dialog.lpCustColors = CurrentRun().Member<CustomColours>().colours;
  dialog.Flags = CC_RGBINIT | CC_FULLOPEN;
  if (!ChooseColorW(&dialog)) return std::nullopt;
  return std::uint32_t{dialog.rgbResult} & 0xFFFFFF;
}

std::optional<std::string> AskName(Dialog* owner, const std::string& title, const std::string& start) {
  const auto ask = Boxes().name;
  return ask ? ask(owner, title, start) : std::nullopt;
}

int PopupMenu(Dialog* owner, int control, int x, int y, std::span<const MenuItem> items) {
  const OwnedMenu menu;
  for (const MenuItem& item : items) {
    AppendMenuW(menu.handle, MF_STRING | (item.checked ? MF_CHECKED : 0), static_cast<UINT_PTR>(item.id),
                WideOf(item.text).c_str());
  }
  const POINT place = MenuPlace(owner, control, x, y);
  return TrackPopupMenu(menu.handle, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, place.x, place.y, 0,
                        OwnerWindow(owner), nullptr);
}

void SetWaitCursor(bool wait) {
  auto& [depth, before] = CurrentRun().Member<WaitCursor>();
  if (wait) {
    if (!depth++) before = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  } else if (depth && !--depth) {
    SetCursor(before);
  }
}

bool IsShiftDown() { return GetKeyState(VK_SHIFT) < 0; }

bool IsHighContrast() {
  HIGHCONTRASTW state{};
  state.cbSize = sizeof state;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof state, &state, 0) && state.dwFlags & HCF_HIGHCONTRASTON;
}

std::uint32_t GetSystemColour(SystemColour colour) {
  switch (colour) {
    case SystemColour::ButtonFace:
      return GetSysColor(COLOR_BTNFACE);
    case SystemColour::ButtonShadow:
      return GetSysColor(COLOR_BTNSHADOW);
    case SystemColour::ButtonText:
      return GetSysColor(COLOR_BTNTEXT);
    case SystemColour::DarkShadow:
      return GetSysColor(COLOR_3DDKSHADOW);
    case SystemColour::Highlight:
      return GetSysColor(COLOR_BTNHIGHLIGHT);
    case SystemColour::Light3D:
      return GetSysColor(COLOR_3DLIGHT);
    case SystemColour::WindowText:
      return GetSysColor(COLOR_WINDOWTEXT);
    case SystemColour::Window:
      return GetSysColor(COLOR_WINDOW);
    case SystemColour::Selection:
      return GetSysColor(COLOR_HIGHLIGHT);
    case SystemColour::SelectionText:
      return GetSysColor(COLOR_HIGHLIGHTTEXT);
  }
  return 0;
}

int GetSystemSize(const Dialog& dialog, SystemSize size) {
  const int pixels = GetSystemMetrics(size == SystemSize::DialogFrame ? SM_CYFIXEDFRAME : SM_CYHSCROLL);
  return static_cast<int>(std::ceil(pixels / ScaleOf(dialog)));
}

void ScreenSize(int& width, int& height) {
  width = GetSystemMetrics(SM_CXSCREEN);
  height = GetSystemMetrics(SM_CYSCREEN);
}

}  // namespace glyphmotion
