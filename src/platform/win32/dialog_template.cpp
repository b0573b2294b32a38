// SPDX-License-Identifier: MIT
// From template rows to windows: a whole dialog as an in-memory system template, a panel's controls as windows added to
// an open dialog.
#include <cstring>
#include <string_view>

#include "platform/dialog_number.h"
#include "platform/win32/dialog_state.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

constexpr const wchar_t* kDrawnClass = L"GlyphmotionDrawn";
constexpr int kDropHeight = 200;  // dialog units; height of a combo's list, added to its field

struct WindowKind {
  const wchar_t* className;
  DWORD style, extendedStyle;
};

WindowKind WindowKindOf(ControlKind kind) {
  constexpr DWORD kCombo = CBS_DROPDOWNLIST | CBS_HASSTRINGS | WS_VSCROLL | WS_TABSTOP;
  switch (kind) {
    case ControlKind::Label:
      return {L"Static", SS_LEFTNOWORDWRAP, 0};
    case ControlKind::Paragraph:
      return {L"Static", SS_LEFT | SS_NOPREFIX, 0};
    case ControlKind::Group:
      return {L"Button", BS_GROUPBOX, 0};
    case ControlKind::Button:
      return {L"Button", BS_PUSHBUTTON | WS_TABSTOP, 0};
    case ControlKind::DefaultButton:
      return {L"Button", BS_DEFPUSHBUTTON | WS_TABSTOP, 0};
    case ControlKind::Check:
      return {L"Button", BS_AUTOCHECKBOX | WS_TABSTOP, 0};
    case ControlKind::Radio:
      return {L"Button", BS_AUTORADIOBUTTON | WS_TABSTOP, 0};
    case ControlKind::Edit:
    case ControlKind::NumberEdit:
      return {L"Edit", ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};
    case ControlKind::UpDown:
      return {UPDOWN_CLASSW, UDS_SETBUDDYINT | UDS_ARROWKEYS | UDS_NOTHOUSANDS, 0};
    case ControlKind::Combo:
      return {L"ComboBox", kCombo, 0};
    case ControlKind::SortedCombo:
      return {L"ComboBox", kCombo | CBS_SORT, 0};
    case ControlKind::List:
      return {L"ListBox", LBS_NOTIFY | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP,
              WS_EX_CLIENTEDGE};
    case ControlKind::PictureList:
      return {L"ListBox",
              LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_TABSTOP,
              WS_EX_CLIENTEDGE};
    case ControlKind::PictureGrid:
      return {L"ListBox",
              LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | LBS_MULTICOLUMN | WS_HSCROLL |
                  WS_TABSTOP,
              WS_EX_CLIENTEDGE};
    case ControlKind::Trackbar:
      return {TRACKBAR_CLASSW, TBS_HORZ | WS_TABSTOP, 0};
    case ControlKind::OwnerDrawn:
      return {L"Static", SS_OWNERDRAW | SS_NOTIFY, 0};
    case ControlKind::ColourButton:
      return {L"Button", BS_OWNERDRAW | WS_TABSTOP, 0};
    default:
      return {kDrawnClass, WS_TABSTOP, 0};
  }
}

/// Every control starts a group of its own, except for a run of radios, which form one.
DWORD GroupStyle(std::span<const ControlTemplate> controls, std::size_t index) {
  const auto isRadio = [&](std::size_t i) { return controls[i].kind == ControlKind::Radio; };
  return isRadio(index) && index && isRadio(index - 1) ? 0 : WS_GROUP;
}

std::wstring CaptionOf(const ControlTemplate& source) {
  return source.caption && !HasItems(source.kind) ? WideOf(source.caption) : std::wstring();
}

/// A label with room for two lines wraps; any other is one line and is clipped rather than wrapped.
DWORD StyleOf(const ControlTemplate& source, const WindowKind& kind) {
  constexpr int kTwoLines = 16;  // dialog units
  return source.kind == ControlKind::Label && source.height >= kTwoLines ? SS_LEFT : kind.style;
}

int HeightOf(const ControlTemplate& source) { return source.height + (IsCombo(source.kind) ? kDropHeight : 0); }

/// Writes the system's records: 16-bit units, terminated strings.
struct TemplateWriter {
  std::vector<std::uint16_t> units;
  void Word(int value) { units.push_back(static_cast<std::uint16_t>(value)); }
  void Double(DWORD value) {
    Word(LOWORD(value));
    Word(HIWORD(value));
  }
  void Text(std::wstring_view text) {
    for (const wchar_t c : text) Word(c);
    Word(0);
  }
  void Align() {
    if (units.size() % 2) Word(0);
  }
};

void WriteControl(TemplateWriter& writer, std::span<const ControlTemplate> controls, std::size_t index) {
  const ControlTemplate& source = controls[index];
  const WindowKind kind = WindowKindOf(source.kind);
  writer.Align();
  writer.Double(0);  // help id
  writer.Double(kind.extendedStyle);
  writer.Double(StyleOf(source, kind) | WS_CHILD | WS_VISIBLE | GroupStyle(controls, index));
  writer.Word(source.x);
  writer.Word(source.y);
  writer.Word(source.width);
  writer.Word(HeightOf(source));
  writer.Double(static_cast<DWORD>(source.id));
  writer.Text(kind.className);
  writer.Text(CaptionOf(source));
  writer.Word(0);  // bytes of creation data
}

/// Fills a combo or a list with the items of its caption, which are separated by semicolons.
void FillFromCaption(HWND window, ControlKind kind, std::string_view caption) {
  const UINT add = IsList(kind) ? LB_ADDSTRING : CB_ADDSTRING;
  for (std::size_t start = 0; start < caption.size();) {
    const std::size_t end = std::min(caption.find(';', start), caption.size());
    if (end > start) {
      SendMessageW(window, add, 0, reinterpret_cast<LPARAM>(WideOf(caption.substr(start, end - start)).c_str()));
    }
    start = end + 1;
  }
}

/// Registers the window as the dialog's next control and subclasses it.
void Adopt(Dialog& dialog, const ControlTemplate& source, HWND window) {
  Control& control = dialog.controls.emplace_back();
  control.kind = source.kind;
  control.id = source.id;
  control.window = window;
  control.dialog = &dialog;
  if (source.id != -1) dialog.byId.emplace(source.id, &control);
  if (HasItems(source.kind) && source.caption) FillFromCaption(window, source.kind, source.caption);
  if (source.kind == ControlKind::UpDown) {
    // Its edit directly precedes it.
    const HWND edit = dialog.controls.size() > 1 ? dialog.controls[dialog.controls.size() - 2].window : nullptr;
    SendMessageW(window, UDM_SETBUDDY, reinterpret_cast<WPARAM>(edit), 0);
    const NumberRange range = ParseRange(source.caption ? source.caption : "");
    SetRange(dialog, source.id, range.minimum, range.maximum);
  }
  if (!SetPropW(window, kControlProperty, &control)) return;
  control.classProcedure = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ControlWindowProcedure)));
}

/// A hidden child of the dialog at the template's position, in the dialog's font.
HWND MakeTwin(const Dialog& dialog, const DialogTemplate& panel, std::size_t index) {
  const ControlTemplate& source = panel.controls[index];
  const WindowKind kind = WindowKindOf(source.kind);
  RECT place{source.x, source.y, source.x + source.width, source.y + HeightOf(source)};
  MapDialogRect(dialog.window, &place);
  const HWND window =
      CreateWindowExW(kind.extendedStyle | WS_EX_NOPARENTNOTIFY, kind.className, CaptionOf(source).c_str(),
                      StyleOf(source, kind) | WS_CHILD | GroupStyle(panel.controls, index), place.left, place.top,
                      place.right - place.left, place.bottom - place.top, dialog.window,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(source.id)), ThisModule(), nullptr);
  if (window) SendMessageW(window, WM_SETFONT, static_cast<WPARAM>(SendMessageW(dialog.window, WM_GETFONT, 0, 0)), 0);
  return window;
}

void RemoveControlsFrom(Dialog& dialog, std::size_t count) {
  while (dialog.controls.size() > count) {
    Control& control = dialog.controls.back();
    const auto found = dialog.byId.find(control.id);
    if (found != dialog.byId.end() && found->second == &control) dialog.byId.erase(found);
    const HWND window = control.window;
    control.procedure = nullptr;
    DestroyWindow(window);
    dialog.controls.pop_back();
  }
}

// The only process-wide object: window classes belong to a module, not to a thread.
struct DrawnClass {
  SRWLOCK lock = SRWLOCK_INIT;
  int users = 0;  ///< number of running dialogs
};
constinit DrawnClass drawnClass;

struct ClassLock {
  ClassLock() { AcquireSRWLockExclusive(&drawnClass.lock); }
  ClassLock(const ClassLock&) = delete;
  ClassLock& operator=(const ClassLock&) = delete;
  ~ClassLock() { ReleaseSRWLockExclusive(&drawnClass.lock); }
};

}  // namespace

const wchar_t* const kControlProperty = L"Glyphmotion.Control";

HINSTANCE ThisModule() noexcept {
  HMODULE module = nullptr;
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(&ThisModule), &module);
  return module;
}

bool RegisterDrawnClass() noexcept {
  const ClassLock lock;
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.style = CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = ThisModule();
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kDrawnClass;
  const bool registered = RegisterClassExW(&windowClass) || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
  if (registered) ++drawnClass.users;
  return registered;
}

void UnregisterDrawnClass() noexcept {
  const ClassLock lock;
  if (--drawnClass.users == 0) UnregisterClassW(kDrawnClass, ThisModule());
}

std::vector<std::uint16_t> TemplateInMemory(const DialogTemplate& source) {
  TemplateWriter writer;
  writer.Word(1);  // version and signature of the extended form
  writer.Word(0xFFFF);
  writer.Double(0);  // help id
  writer.Double(0);  // extended style
  // Visible before the messages posted at its start arrive.
  writer.Double(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE | DS_MODALFRAME | DS_SHELLFONT | DS_CENTER);
  writer.Word(static_cast<int>(source.controls.size()));
  writer.Word(0);
  writer.Word(0);
  writer.Word(source.width);
  writer.Word(source.height);
  writer.Word(0);  // no menu, the standard class
  writer.Word(0);
  writer.Text(WideOf(source.title ? source.title : ""));
  writer.Word(8);  // points
  writer.Word(FW_NORMAL);
  writer.Word(DEFAULT_CHARSET << 8);  // not italic
  writer.Text(L"MS Shell Dlg");
  for (std::size_t i = 0; i < source.controls.size(); ++i) WriteControl(writer, source.controls, i);
  return std::move(writer.units);
}

void AdoptControls(Dialog& dialog) {
  HWND window = GetWindow(dialog.window, GW_CHILD);
  for (const ControlTemplate& source : dialog.source->controls) {
    if (!window) return;
    Adopt(dialog, source, window);
    window = GetWindow(window, GW_HWNDNEXT);
  }
}

bool AddControls(Dialog& dialog, const DialogTemplate& panel, int tabAfter) {
  const std::size_t before = dialog.controls.size();
  const Control* const above = FindControl(dialog, tabAfter);
  HWND previous = above ? above->window : HWND_BOTTOM;
  try {
    for (std::size_t i = 0; i < panel.controls.size(); ++i) {
      const HWND window = MakeTwin(dialog, panel, i);
      if (!window) throw std::bad_alloc();
      Adopt(dialog, panel.controls[i], window);
      // The tab order is the z-order, from the top down.
      SetWindowPos(window, previous, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
      if (above) previous = window;
    }
    return true;
  } catch (const std::bad_alloc&) {
    RemoveControlsFrom(dialog, before);
    return false;
  }
}

}  // namespace glyphmotion
