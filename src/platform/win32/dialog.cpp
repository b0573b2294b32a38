// SPDX-License-Identifier: MIT
// Controls as windows: each function sends a message to the window of an id, or calls the system on it.
#include "platform/dialog.h"

#include <algorithm>
#include <cmath>

#include "platform/dialog_number.h"
#include "platform/win32/dialog_state.h"
#include "platform/win32/wide_text.h"

namespace glyphmotion {
namespace {

/// The corresponding messages of a combo and a list.
struct ItemMessages {
  UINT add, clear, count, text, textLength, remove, data, setData, selection, select, find;
};
constexpr ItemMessages kComboMessages = {CB_ADDSTRING,    CB_RESETCONTENT, CB_GETCOUNT,       CB_GETLBTEXT,
                                         CB_GETLBTEXTLEN, CB_DELETESTRING, CB_GETITEMDATA,    CB_SETITEMDATA,
                                         CB_GETCURSEL,    CB_SETCURSEL,    CB_FINDSTRINGEXACT};
constexpr ItemMessages kListMessages = {LB_ADDSTRING,  LB_RESETCONTENT, LB_GETCOUNT,       LB_GETTEXT,
                                        LB_GETTEXTLEN, LB_DELETESTRING, LB_GETITEMDATA,    LB_SETITEMDATA,
                                        LB_GETCURSEL,  LB_SETCURSEL,    LB_FINDSTRINGEXACT};

const ItemMessages* ItemsOf(const Control* control) {
  if (!control || !HasItems(control->kind)) return nullptr;
  return IsList(control->kind) ? &kListMessages : &kComboMessages;
}

LRESULT Ask(const Control& control, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return SendMessageW(control.window, message, wParam, lParam);
}

WPARAM Index(int index) { return static_cast<WPARAM>(static_cast<INT_PTR>(index)); }

bool HasItem(const Control* control, int index) {
  const ItemMessages* items = ItemsOf(control);
  return items && index >= 0 && index < Ask(*control, items->count);
}

std::string WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return NarrowOf(text);
}

bool HasStyle(const Control* control, LONG_PTR style) {
  return control && (GetWindowLongPtrW(control->window, GWL_STYLE) & style);
}

int Scaled(const Dialog& dialog, int pixels) { return static_cast<int>(std::lround(pixels * ScaleOf(dialog))); }
int Unscaled(const Dialog& dialog, int pixels) { return static_cast<int>(std::lround(pixels / ScaleOf(dialog))); }

void ChangeStyle(HWND window, LONG_PTR part, bool on) {
  const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE), wanted = on ? style | part : style & ~part;
  if (wanted != style) SetWindowLongPtrW(window, GWL_STYLE, wanted);
}

void TakeDigitsOnly(HWND edit, bool digits) {
  if (edit) ChangeStyle(edit, ES_NUMBER, digits);
}

/// A control that is hidden or disabled must not keep the focus.
void LeaveFocus(const Dialog& dialog, const Control& control) {
  if (GetFocus() == control.window) SendMessageW(dialog.window, WM_NEXTDLGCTL, 0, FALSE);
}

}  // namespace

std::string DialogTitle(const Dialog& dialog) { return WindowText(dialog.window); }
void SetDialogTitle(Dialog& dialog, const std::string& title) { SetWindowTextW(dialog.window, WideOf(title).c_str()); }
std::uint64_t WindowOf(Dialog& dialog) { return reinterpret_cast<std::uintptr_t>(dialog.window); }

std::vector<int> Children(const Dialog& dialog) {
  std::vector<int> ids;
  ids.reserve(dialog.controls.size());
  for (const Control& control : dialog.controls) ids.push_back(control.id);
  return ids;
}

bool HasControl(const Dialog& dialog, int id) { return FindControl(dialog, id) != nullptr; }

ControlKind KindOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->kind : ControlKind::Label;
}

bool ReadableOnAnyThread() noexcept { return false; }

std::string GetText(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  if (!control) return {};
  if (HasItems(control->kind)) return ItemText(dialog, id, GetSelection(dialog, id));
  if (control->kind == ControlKind::Trackbar) return std::to_string(Ask(*control, TBM_GETPOS));
  return WindowText(control->window);
}

void SetText(Dialog& dialog, int id, const std::string& text) {
  const Control* control = FindControl(dialog, id);
  if (!control || HasItems(control->kind)) return;
  if (control->kind == ControlKind::Trackbar) {
    Ask(*control, TBM_SETPOS, TRUE, std::atoi(text.c_str()));
  } else {
    SetWindowTextW(control->window, WideOf(text).c_str());
    if (control->kind != ControlKind::UpDown) return;
    const NumberRange range = ParseRange(text);
    SetRange(dialog, id, range.minimum, range.maximum);
  }
}

std::int64_t GetNumber(const Dialog& dialog, int id, bool isSigned) {
  return NumberOfText(GetText(dialog, id), isSigned);
}

void SetNumber(Dialog& dialog, int id, std::int64_t value) { SetText(dialog, id, std::to_string(value)); }

void LimitText(Dialog& dialog, int id, int characters) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->limit = std::max(characters, 0);
  Ask(*control, EM_LIMITTEXT, Index(control->limit));
}

bool GetCheck(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && Ask(*control, BM_GETCHECK) == BST_CHECKED;
}

void SetCheck(Dialog& dialog, int id, bool checked) {
  if (const Control* control = FindControl(dialog, id)) Ask(*control, BM_SETCHECK, checked);
}

int AddItem(Dialog& dialog, int id, const std::string& text) {
  const Control* control = FindControl(dialog, id);
  const ItemMessages* items = ItemsOf(control);
  if (!items) return -1;
  const LRESULT index = Ask(*control, items->add, 0, reinterpret_cast<LPARAM>(WideOf(text).c_str()));
  return index < 0 ? -1 : static_cast<int>(index);
}

// Redrawing after every item would take seconds for some hundreds.
void AddItems(Dialog& dialog, int id, std::span<const std::string> texts) {
  const Control* control = FindControl(dialog, id);
  if (!ItemsOf(control)) return;
  const bool visible = HasStyle(control, WS_VISIBLE);  // the message shows hidden windows
  if (visible) Ask(*control, WM_SETREDRAW, FALSE);
  for (const std::string& text : texts) AddItem(dialog, id, text);
  if (visible) Ask(*control, WM_SETREDRAW, TRUE);
  InvalidateRect(control->window, nullptr, TRUE);
}

void ClearItems(Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  if (const ItemMessages* items = ItemsOf(control)) Ask(*control, items->clear);
}

int ItemCount(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  const ItemMessages* items = ItemsOf(control);
  return items ? static_cast<int>(Ask(*control, items->count)) : 0;
}

std::string ItemText(const Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  if (!HasItem(control, index)) return {};
  const ItemMessages& items = *ItemsOf(control);
  const LRESULT length = Ask(*control, items.textLength, Index(index));
  if (length < 0) return {};
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  Ask(*control, items.text, Index(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return NarrowOf(text);
}

void DeleteItem(Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  if (HasItem(control, index)) Ask(*control, ItemsOf(control)->remove, Index(index));
}

std::uint64_t ItemData(const Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  return HasItem(control, index) ? static_cast<std::uint64_t>(Ask(*control, ItemsOf(control)->data, Index(index))) : 0;
}

void SetItemData(Dialog& dialog, int id, int index, std::uint64_t data) {
  const Control* control = FindControl(dialog, id);
  if (HasItem(control, index)) Ask(*control, ItemsOf(control)->setData, Index(index), static_cast<LPARAM>(data));
}

void SetItemSize(Dialog& dialog, int id, int width, int height) {
  const Control* control = FindControl(dialog, id);
  if (!control || !IsPictureList(control->kind)) return;
  Ask(*control, LB_SETITEMHEIGHT, 0, std::clamp(Scaled(dialog, height), 1, 255));  // the range of a list box
  if (control->kind == ControlKind::PictureGrid) {
    Ask(*control, LB_SETCOLUMNWIDTH, Index(std::max(Scaled(dialog, width), 1)));
  }
}

ControlRectangle RectangleOfItem(const Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  RECT place{};
  if (!control || !IsList(control->kind) ||
      Ask(*control, LB_GETITEMRECT, Index(index), reinterpret_cast<LPARAM>(&place)) == LB_ERR) {
    return {};
  }
  return {Unscaled(dialog, place.left), Unscaled(dialog, place.top), Unscaled(dialog, place.right),
          Unscaled(dialog, place.bottom)};
}

int GetSelection(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  const ItemMessages* items = ItemsOf(control);
  return items ? static_cast<int>(Ask(*control, items->selection)) : -1;
}

void SetSelection(Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  if (const ItemMessages* items = ItemsOf(control)) {
    Ask(*control, items->select, Index(HasItem(control, index) ? index : -1));
  }
}

int SelectText(Dialog& dialog, int id, const std::string& text) {
  const Control* control = FindControl(dialog, id);
  const ItemMessages* items = ItemsOf(control);
  if (!items) return -1;
  const LRESULT index = Ask(*control, items->find, Index(-1), reinterpret_cast<LPARAM>(WideOf(text).c_str()));
  if (index < 0) return -1;
  SetSelection(dialog, id, static_cast<int>(index));
  return static_cast<int>(index);
}

std::uint64_t GetData(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? static_cast<std::uint64_t>(GetWindowLongPtrW(control->window, GWLP_USERDATA)) : 0;
}

void SetData(Dialog& dialog, int id, std::uint64_t data) {
  const Control* control = FindControl(dialog, id);
  if (control) SetWindowLongPtrW(control->window, GWLP_USERDATA, static_cast<LONG_PTR>(data));
}

bool IsEnabled(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && !HasStyle(control, WS_DISABLED);
}

void Enable(Dialog& dialog, int id, bool enabled) {
  const Control* control = FindControl(dialog, id);
  if (!control || enabled != HasStyle(control, WS_DISABLED)) return;
  if (!enabled) LeaveFocus(dialog, *control);
  EnableWindow(control->window, enabled);
}

bool IsVisible(const Dialog& dialog, int id) { return HasStyle(FindControl(dialog, id), WS_VISIBLE); }

void Show(Dialog& dialog, int id, bool visible) {
  const Control* control = FindControl(dialog, id);
  if (!control || visible == HasStyle(control, WS_VISIBLE)) return;
  if (!visible) LeaveFocus(dialog, *control);
  ShowWindow(control->window, visible ? SW_SHOWNA : SW_HIDE);
}

bool IsDialogVisible(const Dialog& dialog) { return IsWindowVisible(dialog.window); }

void SetFocus(Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  if (!control) return;
  dialog.choseFocus = true;
  SendMessageW(dialog.window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control->window), TRUE);
}

int FocusOf(const Dialog& dialog) {
  const HWND focus = GetFocus();
  for (const Control& control : dialog.controls) {
    if (control.window == focus) return control.id;
  }
  return 0;
}

ControlRectangle RectangleOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  RECT place{};
  if (!control || !GetWindowRect(control->window, &place)) return {};
  MapWindowPoints(nullptr, dialog.window, reinterpret_cast<POINT*>(&place), 2);
  // The size is rounded by itself, as for faces; rounding both edges might differ.
  const int left = Unscaled(dialog, place.left), top = Unscaled(dialog, place.top);
  return {left, top, left + Unscaled(dialog, place.right - place.left),
          top + Unscaled(dialog, place.bottom - place.top)};
}

void ResizeControl(Dialog& dialog, int id, int width, int height) {
  const Control* control = FindControl(dialog, id);
  if (!control) return;
  SetWindowPos(control->window, nullptr, 0, 0, Scaled(dialog, std::max(width, 0)), Scaled(dialog, std::max(height, 0)),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void MoveControl(Dialog& dialog, int id, int left, int top) {
  const Control* control = FindControl(dialog, id);
  if (!control) return;
  SetWindowPos(control->window, nullptr, Scaled(dialog, left), Scaled(dialog, top), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void GrowDialog(Dialog& dialog, int across, int down) {
  RECT place;
  if (!GetWindowRect(dialog.window, &place)) return;
  const int dx = Scaled(dialog, across), dy = Scaled(dialog, down);
  SetWindowPos(dialog.window, nullptr, place.left - dx / 2, place.top - dy / 2, place.right - place.left + dx,
               place.bottom - place.top + dy, SWP_NOZORDER | SWP_NOACTIVATE);
}

TextExtent MeasureText(const Dialog& dialog, const std::string& text, int width) {
  const HDC context = GetDC(dialog.window);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(dialog.window, WM_GETFONT, 0, 0));
  const HGDIOBJ before = font ? SelectObject(context, font) : nullptr;
  RECT place{0, 0, Scaled(dialog, width), 0};
  DrawTextW(context, WideOf(text).c_str(), -1, &place, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
  if (before) SelectObject(context, before);
  ReleaseDC(dialog.window, context);
  const double scale = ScaleOf(dialog);
  return {static_cast<int>(std::ceil(place.right / scale)) + 1, static_cast<int>(std::ceil(place.bottom / scale))};
}

void PaintInScreenPixels(Dialog& dialog, int id) {
  if (Control* control = FindControl(dialog, id)) control->inScreenPixels = true;
}

void SetRange(Dialog& dialog, int id, int minimum, int maximum) {
  const Control* control = FindControl(dialog, id);
  if (!control) return;
  if (minimum > maximum) std::swap(minimum, maximum);
  if (control->kind == ControlKind::UpDown) {
    Ask(*control, UDM_SETRANGE32, Index(minimum), maximum);
    TakeDigitsOnly(reinterpret_cast<HWND>(Ask(*control, UDM_GETBUDDY)), minimum >= 0);
  }
  if (control->kind == ControlKind::Trackbar) {
    Ask(*control, TBM_SETRANGEMIN, FALSE, minimum);
    Ask(*control, TBM_SETRANGEMAX, TRUE, maximum);
  }
}

ControlRange RangeOf(const Dialog& dialog, int id) {
  ControlRange range;
  const Control* control = FindControl(dialog, id);
  if (control && control->kind == ControlKind::UpDown) {
    Ask(*control, UDM_GETRANGE32, reinterpret_cast<WPARAM>(&range.minimum), reinterpret_cast<LPARAM>(&range.maximum));
  } else if (control && control->kind == ControlKind::Trackbar) {
    range = {static_cast<int>(Ask(*control, TBM_GETRANGEMIN)), static_cast<int>(Ask(*control, TBM_GETRANGEMAX))};
  }
  return range;
}

void SetTicks(Dialog& dialog, int id, int every) {
  const Control* control = FindControl(dialog, id);
  if (!control || control->kind != ControlKind::Trackbar || every < 1) return;
  const LRESULT least = Ask(*control, TBM_GETRANGEMIN), most = Ask(*control, TBM_GETRANGEMAX);
  Ask(*control, TBM_CLEARTICS, FALSE);
  for (LRESULT at = least / every * every; at <= most; at += every) Ask(*control, TBM_SETTIC, 0, at);
  Ask(*control, TBM_SETPAGESIZE, 0, every);
}

void SetTabStop(Dialog& dialog, int id, bool stops) {
  const Control* control = FindControl(dialog, id);
  if (control) ChangeStyle(control->window, WS_TABSTOP, stops);
}

void SetControlProcedure(Dialog& dialog, int id, ControlProcedure procedure, const void* family) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  if (IsPushButton(control->kind) && procedure && !control->procedure) {
    control->isDefault = HasStyle(control, BS_DEFPUSHBUTTON);
    SendMessageW(control->window, BM_SETSTYLE, BS_OWNERDRAW, TRUE);
  }
  control->procedure = procedure;
  control->family = family;
}

const void* FamilyOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->family : nullptr;
}

void PostToControl(Dialog& dialog, int id, const Message& message) {
  const Control* control = FindControl(dialog, id);
  if (control) PostMessageW(control->window, message.number, message.a, message.b);
}

void SetTimer(Dialog& dialog, int timer, int milliseconds) {
  ::SetTimer(dialog.window, static_cast<UINT_PTR>(timer), static_cast<UINT>(std::max(milliseconds, 0)), nullptr);
}

void KillTimer(Dialog& dialog, int timer) { ::KillTimer(dialog.window, static_cast<UINT_PTR>(timer)); }

void Invalidate(Dialog& dialog, int id) {
  if (id == 0) {
    RedrawWindow(dialog.window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
  } else if (const Control* control = FindControl(dialog, id)) {
    InvalidateRect(control->window, nullptr, FALSE);
  }
}

void RepaintNow(Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  if (id == 0 || control) UpdateWindow(id == 0 ? dialog.window : control->window);
}

void CaptureMouse(Dialog& dialog, int id) {
  if (const Control* control = FindControl(dialog, id)) SetCapture(control->window);
}

void ReleaseMouse(Dialog& dialog) {
  dialog.releasing = true;
  ReleaseCapture();
  dialog.releasing = false;
}

bool IsPointerOver(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  RECT place;
  POINT pointer;
  return control && GetCursorPos(&pointer) && GetWindowRect(control->window, &place) && PtInRect(&place, pointer);
}

bool HasCapture(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && GetCapture() == control->window;
}

}  // namespace glyphmotion
