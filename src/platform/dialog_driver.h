// SPDX-License-Identifier: MIT
// Simulates the user of an in-memory dialog. (On Windows the user is a person, and this service does not exist.)
#pragma once

#include <functional>

#include "platform/dialog.h"

namespace glyphmotion {

/// Sets the function that RunModal calls for every dialog of the current run, outermost first, once it is open. Returns
/// the previous driver.
using ModalDriver = std::function<void(Dialog& dialog, int templateId)>;
ModalDriver SetModalDriver(ModalDriver driver);

/// A change of a dialog that a view has to show.
struct DialogChange {
  enum What { Text, Check, Selection, Items, Enabled, Visible, Repaint, Focus, Created, Ended } what;
  int id;  ///< 0 for the dialog itself
};
using DialogObserver = std::function<void(Dialog& dialog, const DialogChange& change)>;
/// Sets the current run's only observer; an empty function removes it.
void SetDialogObserver(DialogObserver observer);

/// Delivers the posted messages of all dialogs of this dialog's run, and all timers as if they were due, until none are
/// left.
void Pump(Dialog& dialog);

/// For a view that lives: from now on a pump fires only the timers whose time has come.
void FireTimersByTheClock();
/// With that, how long until the next timer of the open dialogs is due, in milliseconds; -1 when none is set.
int MillisecondsToNextTimer();

/// A control as a view shows it, also one without an id.
struct ControlView {
  ControlKind kind;
  int id;  ///< -1: none
  bool visible, enabled, check;
  int selection, limit;  ///< a person may type `limit` characters; 0: any number
  ControlRectangle place;
  const std::string& text;
};
int ControlCount(const Dialog& dialog);
/// The child number `index`; valid until the dialog changes.
ControlView ControlAt(const Dialog& dialog, int index);

// User actions. Each notifies the dialog as the control would, pumps, and returns false when the control does not
// exist, is disabled or hidden, or the dialog has ended.
bool Click(Dialog& dialog, int id);                          ///< buttons, checks (toggles), radios
bool Type(Dialog& dialog, int id, const std::string& text);  ///< replaces an edit's text, truncated to its limit
bool Choose(Dialog& dialog, int id, int index);              ///< a combo's or list's item
bool DoubleClick(Dialog& dialog, int id, int index);         ///< a list's item, which is chosen first
bool RightClick(Dialog& dialog, int id, int index);          ///< likewise
bool PressKey(Dialog& dialog, int id, KeyCode key);  ///< to a drawn control, an edit (up, down) or a list (delete, F2,
                                                     ///< menu); F1 asks for help on any
bool Mouse(Dialog& dialog, int id, MessageNumber what, int x,
           int y);                ///< to a drawn control; captured moves go to the captor
void StealMouse(Dialog& dialog);  ///< another window takes the mouse capture

/// Paints the control's appearance into `request`: a drawn or owner-drawn control, a button with a procedure, or the
/// list item that `request` names.
bool PaintControl(Dialog& dialog, int id, const DrawRequest& request);

}  // namespace glyphmotion
