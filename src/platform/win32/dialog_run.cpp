// SPDX-License-Identifier: MIT
// Translates window messages into dialog messages, and runs the modal loop. There is no policy here: window messages
// that the program knows are translated, all others get their default handling.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>

#include "platform/win32/dialog_state.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

/// The most recently opened dialog of a run.
struct Innermost {
  Dialog* dialog = nullptr;
};

/// Exceptions must not cross a window procedure: the first one ends the dialog, and RunModal rethrows it.
template <typename Call>
void Guarded(Dialog& dialog, Call call) {
  try {
    call();
  } catch (...) {
    if (!dialog.error) dialog.error = std::current_exception();
    EndDialog(dialog, -1);
  }
}

int Logical(const Dialog& dialog, int pixels) { return static_cast<int>(std::floor(pixels / ScaleOf(dialog))); }

std::uint64_t Wide(int value) { return static_cast<std::uint64_t>(static_cast<std::int64_t>(value)); }

void PaintByProcedure(const Control& control, HDC context, const RECT& place, const DrawRequest& state) {
  PaintFace(control, context, place, state, [&](const DrawRequest& request) {
    DrawRequest copy = request;
    Guarded(*control.dialog, [&] {
      control.procedure(*control.dialog, control.id, {kMessagePaint, 0, PointerArgument(&copy)});
    });
  });
}

// --- Drawn controls ---

/// True for the menu key or Shift+F10, as opposed to the pointer.
bool IsMenuByKey(UINT message, LPARAM lParam) { return message == WM_CONTEXTMENU && lParam == -1; }

bool IsKnownKey(WPARAM key) {
  constexpr int kKeys[] = {kKeyLeft, kKeyUp, kKeyRight, kKeyDown, kKeyInsert, kKeyDelete, kKeySpace, kKeyF2};
  return std::find(std::begin(kKeys), std::end(kKeys), static_cast<int>(key)) != std::end(kKeys);
}

// Faces show the focus.
void PaintDrawn(Control& control) {
  PAINTSTRUCT paint;
  const HDC context = BeginPaint(control.window, &paint);
  RECT place;
  if (context && GetClientRect(control.window, &place)) {
    DrawRequest state;
    state.focused = GetFocus() == control.window;
    PaintByProcedure(control, context, place, state);
    if (state.focused && control.kind == ControlKind::Drawn) {
      InflateRect(&place, -3, -3);
      DrawFocusRect(context, &place);
    }
  }
  EndPaint(control.window, &paint);
}

/// True when the message was for the control's procedure, or concerns its focus and tab behaviour.
bool HandleDrawn(Control& control, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  const auto hand = [&](std::uint32_t number, std::uint64_t a, std::int64_t b) {
    Guarded(*control.dialog, [&] { control.procedure(*control.dialog, control.id, {number, a, b}); });
  };
  result = 0;
  switch (message) {
    case WM_PAINT:
      PaintDrawn(control);
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_GETDLGCODE:
      result = DLGC_WANTARROWS;
      return true;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
      InvalidateRect(control.window, nullptr, FALSE);
      return false;
    case WM_KEYDOWN:
      if (!IsKnownKey(wParam)) return false;
      hand(kMessageKeyDown, wParam, 0);
      return true;
    case WM_CONTEXTMENU:
      if (!IsMenuByKey(message, lParam)) return false;
      hand(kMessageKeyDown, kKeyMenu, 0);
      return true;
    case WM_COMMAND:  // such a control has no children, so this comes from PostToControl
      hand(kMessageCommand, wParam, lParam);
      return true;
    case WM_LBUTTONDOWN:
      ::SetFocus(control.window);
      [[fallthrough]];
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONUP:
    case WM_MOUSEMOVE:
      hand(message, Wide(Logical(*control.dialog, static_cast<short>(LOWORD(lParam)))),
           Logical(*control.dialog, static_cast<short>(HIWORD(lParam))));
      return true;
    case WM_CAPTURECHANGED:
      if (!control.dialog->releasing && reinterpret_cast<HWND>(lParam) != control.window) {
        hand(kMessageCaptureLost, 0, 0);
      }
      return true;
    default:
      return false;
  }
}

// --- Buttons that a procedure paints ---

/// The system's class never makes an owner-drawn button the default and does not track hovering, so both are done here.
bool HandleButton(Control& control, UINT message, WPARAM wParam, LRESULT& result) {
  const auto show = [&](bool& state, bool value) {
    if (std::exchange(state, value) != value) InvalidateRect(control.window, nullptr, FALSE);
  };
  result = 0;
  switch (message) {
    case WM_GETDLGCODE:
      result = DLGC_BUTTON | (control.isDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
      return true;
    case BM_SETSTYLE:
      show(control.isDefault, (wParam & BS_TYPEMASK) == BS_DEFPUSHBUTTON);
      return true;
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_MOUSEMOVE: {
      TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, control.window, 0};
      if (!control.hot) TrackMouseEvent(&track);
      show(control.hot, true);
      return false;
    }
    case WM_MOUSELEAVE:
      show(control.hot, false);
      return false;
    default:
      return false;
  }
}

// --- Lists ---

/// Handles a right click on an item, which it selects first, and the keys that act on an item. True when the list does
/// not have to see the message.
bool HandleList(const Control& control, UINT message, WPARAM wParam, LPARAM lParam) {
  Dialog& dialog = *control.dialog;
  if (message == WM_KEYDOWN && (wParam == VK_DELETE || wParam == VK_F2)) {
    PostCommand(dialog, control.id, wParam == VK_F2 ? kRenamePressed : kDeletePressed);
    return true;
  }
  if (IsMenuByKey(message, lParam)) {
    if (GetSelection(dialog, control.id) >= 0) PostCommand(dialog, control.id, kItemMenuByKey);
    return true;
  }
  if (message != WM_RBUTTONUP) return false;
  const LRESULT found = SendMessageW(control.window, LB_ITEMFROMPOINT, 0, lParam);
  const int index = LOWORD(found);
  RECT place{};
  const POINT pointer{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
  if (HIWORD(found) ||
      SendMessageW(control.window, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place)) ==
          LB_ERR ||
      !PtInRect(&place, pointer)) {
    return true;
  }
  ::SetFocus(control.window);
  if (GetSelection(dialog, control.id) != index) {
    SetSelection(dialog, control.id, index);
    PostCommand(dialog, control.id, kSelectionChanged);
  }
  PostCommand(dialog, control.id, kItemMenu);
  return true;
}

// --- Dialogs ---

/// The notification codes that the program uses; the others are ignored.
bool IsKnownCode(const Control& control, int code) {
  if (IsCombo(control.kind)) return code == CBN_SELCHANGE;
  if (IsList(control.kind)) return code == LBN_SELCHANGE || code == LBN_DBLCLK;
  if (control.kind == ControlKind::Edit || control.kind == ControlKind::NumberEdit) {
    return code == EN_CHANGE || code == EN_KILLFOCUS;
  }
  return code == BN_CLICKED;
}

void OnCommand(Dialog& dialog, WPARAM wParam, LPARAM lParam) {
  const int id = LOWORD(wParam);
  int code = HIWORD(wParam);
  const Control* control = lParam ? FindControl(dialog, id) : nullptr;
  // On a drawn button a double click counts as two clicks.
  if (control && !HasItems(control->kind) && code == BN_DOUBLECLICKED) code = BN_CLICKED;
  if (lParam && (!control || !IsKnownCode(*control, code))) return;
  Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), code});
}

/// F1 goes to the focused control, which passes it to its parent.
void OnHelp(Dialog& dialog, const HELPINFO& asked) {
  if (asked.iContextType != HELPINFO_WINDOW) return;
  const auto window = static_cast<HWND>(asked.hItemHandle);
  const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                  [&](const Control& control) { return control.window == window; });
  Send(dialog, {kMessageHelp, found == dialog.controls.end() ? 0 : static_cast<std::uint64_t>(found->id), 0});
}

void OnScroll(Dialog& dialog, LPARAM lParam) {
  const int id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
  if (KindOf(dialog, id) != ControlKind::Trackbar) return;
  Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), kEditChanged});
}

void OnDrawItem(Dialog& dialog, const DRAWITEMSTRUCT& item) {
  Control* control = FindControl(dialog, static_cast<int>(item.CtlID));
  if (!control) return;
  const bool isItem = IsPictureList(control->kind);
  if (isItem && item.itemID == static_cast<UINT>(-1)) return;  // an empty list shows no focus
  DrawRequest state;
  state.focused = item.itemState & ODS_FOCUS;
  if (control->kind != ControlKind::OwnerDrawn && !isItem) {
    state.pressed = item.itemState & ODS_SELECTED;
    state.hot = control->hot;
    state.isDefault = control->isDefault;
    state.hidesMnemonics = item.itemState & ODS_NOACCEL;
    if (item.itemState & ODS_NOFOCUSRECT) state.focused = false;
    if (control->procedure) PaintByProcedure(*control, item.hDC, item.rcItem, state);
    return;
  }
  if (isItem) {
    state.item = static_cast<int>(item.itemID);
    state.selected = item.itemState & ODS_SELECTED;
  }
  PaintFace(*control, item.hDC, item.rcItem, state, [&](const DrawRequest& request) {
    DrawRequest copy = request;
    Guarded(dialog, [&] {
      Send(dialog, {kMessageDrawItem, static_cast<std::uint64_t>(control->id), PointerArgument(&copy)});
    });
  });
}

/// A drag or a press ends when another window is activated: the button may be released there.
void OnDeactivate(Dialog& dialog) {
  const HWND captor = GetCapture();
  for (const Control& control : dialog.controls) {
    if (control.window != captor || !IsDrawn(control.kind)) continue;
    ReleaseCapture();  // which notifies the control
    return;
  }
}

/// Sends kMessageDestroy: to the dialog's procedure first, while its controls exist, then to the controls in order. All
/// of them get it, even if one throws.
void OnDestroy(Dialog& dialog) {
  // If the window is destroyed with its owner, the modal loop notices only at its next message.
  if (!dialog.ended) PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
  dialog.ended = true;
  Guarded(dialog, [&] { Send(dialog, {kMessageDestroy, 0, 0}); });
  for (std::size_t i = 0; i < dialog.controls.size(); ++i) {
    Control& control = dialog.controls[i];
    const ControlProcedure procedure = std::exchange(control.procedure, nullptr);
    if (procedure) Guarded(dialog, [&] { procedure(dialog, control.id, {kMessageDestroy, 0, 0}); });
  }
}

/// Whether the message was handled.
INT_PTR HandleDialog(Dialog& dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      AdoptControls(dialog);
      Send(dialog, {kMessageInitialise, 0, PointerArgument(dialog.parameter)});
      return !dialog.choseFocus;
    case WM_COMMAND:
      OnCommand(dialog, wParam, lParam);
      return TRUE;
    case WM_HELP:
      OnHelp(dialog, *reinterpret_cast<const HELPINFO*>(lParam));
      return TRUE;
    case WM_TIMER:
      Send(dialog, {kMessageTimer, wParam, 0});
      return TRUE;
    case WM_DRAWITEM:
      OnDrawItem(dialog, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) OnDeactivate(dialog);
      return FALSE;
    case WM_HSCROLL:
    case WM_VSCROLL:
      if (lParam) OnScroll(dialog, lParam);
      return FALSE;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return BrushBehind(dialog, reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_ERASEBKGND:
      EraseBackground(dialog, reinterpret_cast<HDC>(wParam));
      SetWindowLongPtrW(dialog.window, DWLP_MSGRESULT, 1);
      return TRUE;
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
      ForgetBackground(dialog);
      return FALSE;
    case WM_DESTROY:
      OnDestroy(dialog);
      return FALSE;
    default:
      if (!IsPrivate(message)) return FALSE;
      SetWindowLongPtrW(dialog.window, DWLP_MSGRESULT, Send(dialog, {message, wParam, lParam}));
      return TRUE;
  }
}

INT_PTR CALLBACK DialogWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    reinterpret_cast<Dialog*>(lParam)->window = window;
    SetWindowLongPtrW(window, DWLP_USER, lParam);
  }
  const auto dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!dialog) return FALSE;
  const RunScope scope(*dialog->run);
  INT_PTR handled = FALSE;
  Guarded(*dialog, [&] { handled = HandleDialog(*dialog, message, wParam, lParam); });
  return handled;
}

/// While it exists, new windows use the visual style of this module's manifest, whatever the host's style. Without a
/// manifest nothing changes.
struct OwnLooks {
  HANDLE context = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie = 0;
  bool active = false;

  OwnLooks() {
    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = ThisModule();
    request.lpResourceName = ISOLATIONAWARE_MANIFEST_RESOURCE_ID;
    context = CreateActCtxW(&request);
    active = context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie);
  }
  OwnLooks(const OwnLooks&) = delete;
  OwnLooks& operator=(const OwnLooks&) = delete;
  ~OwnLooks() {
    if (active) DeactivateActCtx(0, cookie);
    if (context != INVALID_HANDLE_VALUE) ReleaseActCtx(context);
  }
};

}  // namespace

LRESULT CALLBACK ControlWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto control = static_cast<Control*>(GetPropW(window, kControlProperty));
  if (!control || !control->classProcedure) return DefWindowProcW(window, message, wParam, lParam);
  const WNDPROC classProcedure = control->classProcedure;
  const RunScope scope(*control->dialog->run);
  LRESULT result = 0;
  if (message == WM_NCDESTROY) {
    RemovePropW(window, kControlProperty);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(classProcedure));
  } else if (control->procedure && IsPrivate(message)) {
    Guarded(*control->dialog, [&] {
      result = control->procedure(*control->dialog, control->id, {message, wParam, lParam});
    });
    return result;
  } else if (control->procedure && IsDrawn(control->kind) && HandleDrawn(*control, message, wParam, lParam, result)) {
    return result;
  } else if (message == WM_KEYDOWN && wParam == 'C' && IsPushButton(control->kind) && GetKeyState(VK_CONTROL) < 0) {
    Guarded(*control->dialog, [&] { Send(*control->dialog, {kMessageCopy, 0, 0}); });
    return 0;
  } else if (control->procedure && IsPushButton(control->kind) && HandleButton(*control, message, wParam, result)) {
    return result;
  } else if (message == WM_ENABLE && control->kind == ControlKind::Label) {
    EraseBehind(*control);  // a label is transparent: the new text would be drawn over the old
  } else if (IsList(control->kind) && HandleList(*control, message, wParam, lParam)) {
    return 0;
  } else if (control->limit) {
    Guarded(*control->dialog, [&] { LimitInsertion(*control, message, wParam, lParam); });
  }
  return CallWindowProcW(classProcedure, window, message, wParam, lParam);
}

// The user is a person, and a library that may be unloaded must not leave state in the host's threads.
void TakeThreadSetup(RunState&) {}

std::int64_t RunModal(const DialogTemplate& dialogTemplate, void* owner, DialogProcedure procedure, void* parameter) {
  RunState& run = CurrentRun();
  Innermost& innermost = run.Member<Innermost>();
  const OwnLooks looks;
  INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS | ICC_BAR_CLASSES};
  if (!InitCommonControlsEx(&classes) || !RegisterDrawnClass()) return -1;
  Dialog dialog;
  dialog.run = &run;
  dialog.source = &dialogTemplate;
  dialog.procedure = procedure;
  dialog.parameter = parameter;
  Dialog* const outer = std::exchange(innermost.dialog, &dialog);
  INT_PTR result = -1;
  try {
    const std::vector<std::uint16_t> inMemory = TemplateInMemory(dialogTemplate);
    const HWND above = owner ? static_cast<HWND>(owner) : outer ? outer->window : nullptr;
    result = DialogBoxIndirectParamW(ThisModule(), reinterpret_cast<const DLGTEMPLATE*>(inMemory.data()), above,
                                     DialogWindowProcedure, reinterpret_cast<LPARAM>(&dialog));
    if (owner) UpdateWindow(above);
  } catch (const std::bad_alloc&) {
    result = -1;
  }
  ForgetBackground(dialog);
  innermost.dialog = outer;
  UnregisterDrawnClass();
  if (dialog.error) std::rethrow_exception(dialog.error);
  return result;
}

void EndDialog(Dialog& dialog, std::int64_t result) {
  dialog.ended = true;
  if (IsWindow(dialog.window)) ::EndDialog(dialog.window, static_cast<INT_PTR>(result));
}

bool HasEnded(const Dialog& dialog) { return dialog.ended; }

std::int64_t SendToControl(Dialog& dialog, int id, const Message& message) {
  const RunScope scope(*dialog.run);
  const Control* control = FindControl(dialog, id);
  return control && control->procedure ? control->procedure(dialog, id, message) : 0;
}

std::int64_t Send(Dialog& dialog, const Message& message) {
  const RunScope scope(*dialog.run);
  return dialog.procedure ? dialog.procedure(dialog, message) : 0;
}

void Post(Dialog& dialog, const Message& message) {
  if (message.number == kMessageCommand) {
    PostCommand(dialog, static_cast<int>(message.a), static_cast<int>(message.b));
  } else {
    PostMessageW(dialog.window, message.number, message.a, message.b);
  }
}

// Without a window handle, like a menu command, so that any id and code is accepted.
void PostCommand(Dialog& dialog, int id, int code) {
  PostMessageW(dialog.window, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(code)), 0);
}

}  // namespace glyphmotion
