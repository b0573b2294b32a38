// SPDX-License-Identifier: MIT
// Desktop services for dialogs: message boxes, file and colour choosers, a name prompt, popup menus, help, the cursor.
// Off Windows there is no desktop: a responder, set by the dialog's driver, answers instead.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace glyphmotion {

struct Dialog;

/// YesNoKeep: a question whose Yes destroys something, so the default button is No.
enum class MessageButtons { Ok, YesNo, YesNoKeep };
enum class MessageIcon { Information, Question, Warning };

/// A modal message over `owner` (which may be null). True for OK and Yes. Questions have a question mark icon, all
/// others a warning.
bool ShowMessage(Dialog* owner, const std::string& text, MessageButtons buttons = MessageButtons::Ok);
/// An informational message.
void ShowInformation(Dialog* owner, const std::string& text);
/// Over a window of the host (null: none), before there is a dialog. The window is repainted afterwards.
void ShowMessageOver(void* window, const std::string& text);

struct MessageQuestion {
  std::string title, text;
  MessageButtons buttons = MessageButtons::Ok;
  MessageIcon icon = MessageIcon::Warning;
};

/// Shows messages and name prompts where there is a screen. If a message cannot be shown (nothing is returned), or if
/// this is not set, the system's own box is used. Not called off Windows, where the responder answers.
struct DesktopBoxes {
  std::optional<bool> (*message)(Dialog* owner, void* window, const MessageQuestion& question) = nullptr;
  std::optional<std::string> (*name)(Dialog* owner, const std::string& title, const std::string& start) = nullptr;
};
/// Sets those of the current run.
void SetDesktopBoxes(const DesktopBoxes& boxes);

/// The desktop's sound for a message.
void Beep(MessageIcon icon);

/// Copies on behalf of `owner`'s window. Retries for up to half a second while another program has the clipboard open;
/// after that nothing is copied.
void CopyToClipboard(Dialog& owner, const std::string& text);

struct FileQuestion {
  bool save = false;
  std::string filterName;        ///< "GM4 files"
  std::string extension;         ///< "GM4", also the default
  std::string folder, fileName;  ///< where the dialog starts
  int width = 0, height = 0;     ///< in: the size wanted, 0 for the system's. out: the size on close
};
/// The path chosen, or nothing.
std::optional<std::string> AskFile(Dialog* owner, FileQuestion& question);

/// The colour chosen (0x00BBGGRR), or nothing. `start` is where the chooser opens.
std::optional<std::uint32_t> AskColour(Dialog* owner, std::uint32_t start);

/// Prompts for a name, with `start` as the initial text; nothing when cancelled.
std::optional<std::string> AskName(Dialog* owner, const std::string& title, const std::string& start);

struct MenuItem {
  int id = 0;
  std::string text;
  bool checked = false;
};
/// Shows a popup menu at a position in the control (or at the pointer when `control` is 0). Returns the id chosen, or
/// 0.
int PopupMenu(Dialog* owner, int control, int x, int y, std::span<const MenuItem> items);

/// Shows or hides the wait cursor; calls nest.
void SetWaitCursor(bool wait);

bool IsShiftDown();

/// Whether the desktop is in high contrast mode, in which only its own colours may be used.
bool IsHighContrast();

/// The colours of the desktop that the drawn controls use.
enum class SystemColour {
  ButtonFace,
  ButtonShadow,
  ButtonText,
  DarkShadow,
  Highlight,
  Light3D,
  WindowText,
  Window,
  Selection,
  SelectionText
};
std::uint32_t GetSystemColour(SystemColour colour);

/// System metrics for dialogs, in pixels.
enum class SystemSize { DialogFrame, HorizontalScrollBar };
int GetSystemSize(const Dialog& dialog, SystemSize size);

/// Width and height of the screen in pixels.
void ScreenSize(int& width, int& height);

/// The responder off Windows. Empty members answer "cancelled" (messages: OK).
struct UiResponder {
  std::function<bool(Dialog*, const std::string&, MessageButtons)> message;
  std::function<std::optional<std::string>(Dialog*, FileQuestion&)> file;
  std::function<std::optional<std::uint32_t>(Dialog*, std::uint32_t)> colour;
  std::function<std::optional<std::string>(Dialog*, const std::string&, const std::string&)> name;
  std::function<int(Dialog*, std::span<const MenuItem>)> menu;
  bool shiftDown = false, highContrast = false;
};
/// Replaces the current run's responder and returns the old one.
UiResponder SetUiResponder(UiResponder responder);

}  // namespace glyphmotion
