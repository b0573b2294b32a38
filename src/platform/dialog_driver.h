// SPDX-License-Identifier: MIT
// Playing the user of a dialog in memory. (On Windows the user is a person, and this service does not exist.)
#pragma once

#include <functional>

#include "platform/dialog.h"

namespace glyphmotion {

/// Called by RunModal for every dialog of the current run, outermost first, once it stands. Gives back the driver
/// before.
using ModalDriver = std::function<void(Dialog& dialog, int templateId)>;
ModalDriver SetModalDriver(ModalDriver driver);

/// One change of a dialog that a view would have to show.
struct DialogChange {
  enum What { Text, Check, Selection, Items, Enabled, Visible, Repaint, Focus, Created, Ended } what;
  int id;  ///< 0 for the dialog itself
};
using DialogObserver = std::function<void(Dialog& dialog, const DialogChange& change)>;
/// The current run's one observer; an empty function takes it away.
void SetDialogObserver(DialogObserver observer);

/// Delivers what was posted to the dialogs of this dialog's run, and due timers as if their time had come, until
/// nothing is left.
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

// What a person does. Each notifies the dialog as the control would, pumps, and returns false when the control does not
// exist, is disabled or hidden, or the dialog has ended.
bool Click(Dialog& dialog, int id);                          ///< buttons, checks (toggles), radios
bool Type(Dialog& dialog, int id, const std::string& text);  ///< replaces an edit's text, cut to its limit
bool Choose(Dialog& dialog, int id, int index);              ///< a combo's or list's item
bool DoubleClick(Dialog& dialog, int id, int index);         ///< a list's item, which is chosen first
bool RightClick(Dialog& dialog, int id, int index);          ///< likewise
bool PressKey(Dialog& dialog, int id, KeyCode key);  ///< to a drawn control, an edit (up, down) or a list (delete, F2,
                                                     ///< menu); F1 asks for help on any
bool Mouse(Dialog& dialog, int id, MessageNumber what, int x,
           int y);                ///< to a drawn control; captured moves go to the captor
void StealMouse(Dialog& dialog);  ///< another window takes the mouse from whoever has captured it

/// The control as it looks: paints a drawn or owner-drawn control, a button with a procedure of its own, or the item of
/// a list that `request` names, on it.
bool PaintControl(Dialog& dialog, int id, const DrawRequest& request);

}  // namespace glyphmotion
