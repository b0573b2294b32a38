// SPDX-License-Identifier: MIT
// What a machine's desktop does for a dialog: message boxes, file and colour choosers, a name prompt, popup menus,
// help, the cursor. Off Windows there is no desktop: the answers come from a responder that the dialog's driver sets.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace glyphmotion {

struct Dialog;

/// YesNoKeep: a question whose Yes destroys something, so that Enter alone answers No.
enum class MessageButtons { Ok, YesNo, YesNoKeep };
enum class MessageIcon { Information, Question, Warning };

/// A modal message over `owner` (which may be null). True for OK and Yes. Questions are asked with a question mark,
/// everything else warns.
bool ShowMessage(Dialog* owner, const std::string& text, MessageButtons buttons = MessageButtons::Ok);
/// A message that nothing went wrong for.
void ShowInformation(Dialog* owner, const std::string& text);
/// Over a window of the host's (null: over none), before there is a dialog. The window is repainted afterwards.
void ShowMessageOver(void* window, const std::string& text);

struct MessageQuestion {
  std::string title, text;
  MessageButtons buttons = MessageButtons::Ok;
  MessageIcon icon = MessageIcon::Warning;
};

/// Who shows messages and asks for names where there is a screen. A message that cannot be shown (nothing) goes to the
/// machine's own box, as all do when there is nobody. Off Windows the responder answers and these are not asked.
struct DesktopBoxes {
  std::optional<bool> (*message)(Dialog* owner, void* window, const MessageQuestion& question) = nullptr;
  std::optional<std::string> (*name)(Dialog* owner, const std::string& title, const std::string& start) = nullptr;
};
/// Those of the current run.
void SetDesktopBoxes(const DesktopBoxes& boxes);

/// The desktop's sound for a message.
void Beep(MessageIcon icon);

/// In the name of `owner`'s window. While another program has the clipboard open it is waited for, half a second at
/// most; after that nothing is copied.
void CopyToClipboard(Dialog& owner, const std::string& text);

struct FileQuestion {
  bool save = false;
  std::string filterName;        ///< "GM4 files"
  std::string extension;         ///< "GM4", also the default
  std::string folder, fileName;  ///< where to begin
  int width = 0, height = 0;     ///< in: the size wanted, 0 for the system's. out: the size on close
};
/// The path chosen, or nothing.
std::optional<std::string> AskFile(Dialog* owner, FileQuestion& question);

/// The colour chosen (0x00BBGGRR), or nothing. `start` is where the chooser opens.
std::optional<std::uint32_t> AskColour(Dialog* owner, std::uint32_t start);

/// A name, starting from `start`; nothing when cancelled.
std::optional<std::string> AskName(Dialog* owner, const std::string& title, const std::string& start);

struct MenuItem {
  int id = 0;
  std::string text;
  bool checked = false;
};
/// A popup menu at a place of the control (or at the pointer when `control` is 0). The id chosen, or 0.
int PopupMenu(Dialog* owner, int control, int x, int y, std::span<const MenuItem> items);

/// Shows or ends the wait cursor; nested.
void SetWaitCursor(bool wait);

bool IsShiftDown();

/// Whether the desktop shows high contrast, in which only its own colours are used.
bool IsHighContrast();

/// The colours of the desktop that the drawn controls use, by the field's names.
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

/// Thicknesses of the desktop's parts where a dialog shows, in pixels.
enum class SystemSize { DialogFrame, HorizontalScrollBar };
int GetSystemSize(const Dialog& dialog, SystemSize size);

/// Width and height of the screen in pixels.
void ScreenSize(int& width, int& height);

/// Off Windows: who answers. Members left empty answer "cancelled" (messages: OK).
struct UiResponder {
  std::function<bool(Dialog*, const std::string&, MessageButtons)> message;
  std::function<std::optional<std::string>(Dialog*, FileQuestion&)> file;
  std::function<std::optional<std::uint32_t>(Dialog*, std::uint32_t)> colour;
  std::function<std::optional<std::string>(Dialog*, const std::string&, const std::string&)> name;
  std::function<int(Dialog*, std::span<const MenuItem>)> menu;
  bool shiftDown = false, highContrast = false;
};
/// Replaces the current run's responder and gives back the old one.
UiResponder SetUiResponder(UiResponder responder);

}  // namespace glyphmotion
