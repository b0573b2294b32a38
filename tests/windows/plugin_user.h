// SPDX-License-Identifier: MIT
// A thread in the place of the person before the dialog. It finds windows, does what a person does to them by the
// messages that the system would send, and reads back what they show.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "plugin_host.h"

namespace glyphmotion::test {

// Controls of the main dialog, by what they are for.
enum MainId : int {
  kBuild = 1,
  kCancel = 2,
  kTrueColourCheck = 10,
  kDelay = 11,
  kPaletteCombo = 13,
  kCustomPalette = 14,
  kDitherCheck = 15,
  kSupercompress = 19,
  kCommentCheck = 20,
  kMaskCheck = 21,
  kPause = 23,
  kTest = 24,
  kTransparent = 35,
  kOpenSave = 36,
  kOpen = 37,
  kSave = 38,
  kSaveAs = 39,
  kText = 52,
  kFont = 53,
  kBold = 54,
  kSize = 57,
  kEffect = 58,
  kPad = 59,
  kAlphaCheck = 62,
  kAlphaBackground = 63
};

/// Waits until `holds`, a minute at most; whether it came true.
bool WaitUntil(const std::function<bool()>& holds);

/// Waits for a visible dialog of this process whose title begins with `title` and which has a control of the id. Ends
/// the whole program when none comes, since the thread that runs the dialog could never be joined.
HWND WaitForDialog(const char* title, int control = 0);
HWND WaitForMainDialog();

/// Runs the main dialog with `user` on a thread of its own, which is handed the dialog once it shows. What the user
/// leaves open is cancelled. The result of PLUGIN16DoBuild.
int RunDialog(const HostCallTable& table, const std::function<void(HWND dialog)>& user, HWND owner = nullptr);
int RunDialog(std::uint32_t flags, const std::function<void(HWND dialog)>& user);

/// The open message box, or null.
HWND FindMessage();
/// Waits for the next message box, presses its button, waits until it is gone, and gives its text.
std::string AnswerMessage(int button = IDOK);

void Press(HWND dialog, int id);  ///< a click on a button or a check; returns when the dialog has taken it
void Command(HWND dialog, int id, int code = 0);  ///< posts the command, as a menu would
/// Presses Build or Test and waits until the run is over.
void PressBuild(HWND dialog);
void PressTest(HWND dialog);
void Choose(HWND dialog, int id, int index);
void Type(HWND dialog, int id, const std::string& text);  ///< over everything that the edit holds
void PressKey(HWND dialog, int id, int key);              ///< to the control; 0: to the one with the focus
/// A short job, so that every effect is built soon.
void AskForLittle(HWND dialog);
std::string TextOf(HWND dialog, int id);
bool IsChecked(HWND dialog, int id);
void SetChecked(HWND dialog, int id, bool checked);  ///< by a click, if it is not so already
bool IsEnabled(HWND dialog, int id);
int SelectionOf(HWND dialog, int id);
/// The control with the focus.
HWND FocusOf(HWND dialog);

/// Holds a key for the thread of a window; the system takes it there with the key state that both threads then share.
struct KeyHeldFor {
  DWORD thread;
  int key, leftKey;
  KeyHeldFor(HWND window, int either, int left);
  KeyHeldFor(const KeyHeldFor&) = delete;
  KeyHeldFor& operator=(const KeyHeldFor&) = delete;
  ~KeyHeldFor();
};

/// Answers the system's file dialog with a path.
void GivePath(const char* title, const std::string& path);

/// Waits for the menu of a control's thread and chooses an item, counted from 0, with the keyboard.
void ChooseFromMenu(HWND control, int index);

// --- The editors behind the fills ---

constexpr const char* kEditors[] = {"Gradient", "Texture", "Matrix"};
constexpr int kAddTile = 103, kAddTexture = 104;  ///< their + buttons

/// The first fill of the effect at hand.
HWND FillOf(HWND dialog);
/// Opens an editor, of kEditors, for the first fill.
HWND OpenEditor(HWND dialog, int editor);
void CloseEditor(HWND editor, int command);
/// A group of the person's own, "Untitled", by the + with Shift of the texture or the tile editor: the shipped ones are
/// not to be changed.
void StartGroup(HWND editor, int addButton);

/// Lets the dialog handle everything that was posted to it before.
void Settle(HWND dialog);
/// Waits until the dialog and everything in it has been painted.
void WaitForPainting(HWND dialog);

}  // namespace glyphmotion::test
