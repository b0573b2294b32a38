// SPDX-License-Identifier: MIT
// The data that a dialog of real windows keeps beside them, shared by dialog.cpp (controls), dialog_template.cpp (from
// templates to windows) and dialog_run.cpp (messages).
#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/dialog_parts.h"
#include "platform/run_state.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

struct Control {
  ControlKind kind = ControlKind::Label;
  int id = -1;
  HWND window = nullptr;
  WNDPROC classProcedure = nullptr;  ///< the original procedure, before subclassing
  ControlProcedure procedure = nullptr;
  const void* family = nullptr;
  Dialog* dialog = nullptr;
  int limit = 0;                        ///< of an edit: the characters it takes; 0: the system's own limit
  bool inScreenPixels = false;          ///< the face is in device pixels
  bool isDefault = false, hot = false;  ///< of a button that a procedure paints
};

struct Dialog {
  RunState* run = nullptr;  ///< the run that created it and handles its messages
  const DialogTemplate* source = nullptr;
  DialogProcedure procedure = nullptr;
  void* parameter = nullptr;
  HWND window = nullptr;
  std::deque<Control> controls;            ///< children in order; a deque keeps pointers valid
  std::unordered_map<int, Control*> byId;  ///< the first child of each id; none for -1
  bool ended = false;
  bool releasing = false;       ///< it is releasing the mouse capture itself
  bool choseFocus = false;      ///< the focus was set before the dialog showed
  std::exception_ptr error;     ///< the first exception of a procedure; RunModal rethrows it
  bool hasBackground = false;   ///< the procedure has been asked for a background
  HBRUSH background = nullptr;  ///< a brush of the whole inside; null: the plain face
  SIZE backgroundSize{};
};

/// Kinds with a window class of this program, drawn and handled entirely by their procedure.
inline bool IsDrawn(ControlKind kind) { return kind >= ControlKind::MaterialButton; }

inline bool IsPushButton(ControlKind kind) { return kind == ControlKind::Button || kind == ControlKind::DefaultButton; }

/// Private messages between dialogs and controls.
constexpr UINT kFirstPrivateMessage = 1224, kLastPrivateMessage = 0x0FFF;
inline bool IsPrivate(UINT message) { return message >= kFirstPrivateMessage && message <= kLastPrivateMessage; }

/// Device pixels per logical pixel of 96 dpi.
double ScaleOf(const Dialog& dialog);

/// Lets `paint` paint the control's face and copies it to the control's context. `state` is the state to show.
void PaintFace(const Control& control, HDC context, const RECT& place, const DrawRequest& state,
               const std::function<void(const DrawRequest&)>& paint);

/// The dialog's background: painted by its procedure once per size, drawn behind its children and supplied as a brush.
void MakeBackground(Dialog& dialog);
void ForgetBackground(Dialog& dialog);
void EraseBackground(Dialog& dialog, HDC context);
INT_PTR BrushBehind(Dialog& dialog, HDC context, HWND window);
/// Paints the background over the control's rectangle.
void EraseBehind(const Control& control);

/// Before a message that inserts text into an edit with a limit: lets through what fits.
void LimitInsertion(const Control& control, UINT message, WPARAM wParam, LPARAM lParam);

/// The module that contains this code.
HINSTANCE ThisModule() noexcept;

/// Registers and unregisters the class of drawn controls, which exists while any dialog runs in any thread: an unloaded
/// library must not leave a class behind. Each call that returned true needs one call of the other.
bool RegisterDrawnClass() noexcept;
void UnregisterDrawnClass() noexcept;

/// The system's form of a dialog template with all its controls.
std::vector<std::uint16_t> TemplateInMemory(const DialogTemplate& source);
/// Registers the windows that the system created from the dialog's template, in the template's order.
void AdoptControls(Dialog& dialog);

/// The subclass procedure of every control; a window property points to its Control.
LRESULT CALLBACK ControlWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
extern const wchar_t* const kControlProperty;

}  // namespace glyphmotion
