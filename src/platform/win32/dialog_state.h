// SPDX-License-Identifier: MIT
// What a dialog of real windows keeps beside them, shared by dialog.cpp (controls), dialog_template.cpp (from templates
// to windows) and dialog_run.cpp (messages).
#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dialog.h"
#include "platform/run_state.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

struct Control {
  ControlKind kind = ControlKind::Label;
  int id = -1;
  HWND window = nullptr;
  WNDPROC classProcedure = nullptr;  ///< the window's own, before it was subclassed
  ControlProcedure procedure = nullptr;
  const void* family = nullptr;
  Dialog* dialog = nullptr;
  bool inScreenPixels = false;          ///< its face is
  bool isDefault = false, hot = false;  ///< of a button that a procedure paints
};

struct Dialog {
  RunState* run = nullptr;  ///< the one that made it, which every message to it works for
  const DialogTemplate* source = nullptr;
  DialogProcedure procedure = nullptr;
  void* parameter = nullptr;
  HWND window = nullptr;
  std::deque<Control> controls;            ///< children in order; a deque, so that adding moves none
  std::unordered_map<int, Control*> byId;  ///< the first child of each id; none for -1
  bool ended = false;
  bool releasing = false;       ///< the mouse, by itself
  bool choseFocus = false;      ///< the focus was set before the dialog showed
  std::exception_ptr error;     ///< the first that a procedure threw; RunModal throws it on
  bool hasBackground = false;   ///< the procedure has been asked for it
  HBRUSH background = nullptr;  ///< a brush of the whole inside; null: the plain face
  SIZE backgroundSize{};
};

inline Control* FindControl(Dialog& dialog, int id) {
  const auto found = dialog.byId.find(id);
  return found == dialog.byId.end() ? nullptr : found->second;
}
inline const Control* FindControl(const Dialog& dialog, int id) {
  const auto found = dialog.byId.find(id);
  return found == dialog.byId.end() ? nullptr : found->second;
}

inline bool IsCombo(ControlKind kind) { return kind == ControlKind::Combo || kind == ControlKind::SortedCombo; }
inline bool IsPictureList(ControlKind kind) {
  return kind == ControlKind::PictureList || kind == ControlKind::PictureGrid;
}
inline bool IsList(ControlKind kind) { return kind == ControlKind::List || IsPictureList(kind); }
inline bool HasItems(ControlKind kind) { return IsCombo(kind) || IsList(kind); }
/// Kinds with a window class of this program, whose whole look and behaviour is their procedure's.
inline bool IsDrawn(ControlKind kind) { return kind >= ControlKind::MaterialButton; }

inline bool IsPushButton(ControlKind kind) { return kind == ControlKind::Button || kind == ControlKind::DefaultButton; }

/// Messages that dialogs and controls send one another beside the system's.
constexpr UINT kFirstPrivateMessage = 1224, kLastPrivateMessage = 0x0FFF;
inline bool IsPrivate(UINT message) { return message >= kFirstPrivateMessage && message <= kLastPrivateMessage; }

/// The screen's pixels to one of 96 to the inch.
double ScaleOf(const Dialog& dialog);

/// Lets `paint` paint the control's face, which then goes to the place of the control's context. `state` tells what the
/// face shows.
void PaintFace(const Control& control, HDC context, const RECT& place, const DrawRequest& state,
               const std::function<void(const DrawRequest&)>& paint);

/// The dialog's background: made by its procedure once for each size, put behind its children, a brush for those that
/// ask.
void MakeBackground(Dialog& dialog);
void ForgetBackground(Dialog& dialog);
void EraseBackground(Dialog& dialog, HDC context);
INT_PTR BrushBehind(Dialog& dialog, HDC context, HWND window);
/// Puts the background where the control is.
void EraseBehind(const Control& control);

/// The library or program that this code is in.
HINSTANCE ThisModule() noexcept;

/// The class of drawn controls lives as long as a dialog runs, in whatever thread: a library that goes must leave no
/// class behind. Each call that returned true wants one of the other.
bool RegisterDrawnClass() noexcept;
void UnregisterDrawnClass() noexcept;

/// The system's form of a dialog template with all its controls.
std::vector<std::uint16_t> TemplateInMemory(const DialogTemplate& source);
/// Takes over the windows that the system made from the dialog's template, in the template's order.
void AdoptControls(Dialog& dialog);

/// The subclass procedure of every control; a window's Control hangs on it as a property.
LRESULT CALLBACK ControlWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
extern const wchar_t* const kControlProperty;

}  // namespace glyphmotion
