// SPDX-License-Identifier: MIT
// The system's dialogs, for the host. Text and paths are UTF-8. `owner` may be null.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "image/colour.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

void Tell(HWND owner, const std::string& text, bool failure);
enum class Answer { Yes, No, Cancel };
Answer AskYesNoCancel(HWND owner, const std::string& text);

std::optional<std::string> AskPicture(HWND owner);
std::optional<std::string> AskPlugin(HWND owner);
std::optional<std::string> AskGifName(HWND owner, const std::string& start);

/// The chooser's free places begin with an even choice of the palette that is offered, if any.
std::optional<Colour> AskColour(HWND owner, Colour start, std::span<const Rgb> palette);

/// Opens a page that lies in `folder`, at a topic if the reference ("page#topic") names one. False when there is no
/// such page, or nothing that shows it.
bool OpenHelp(HWND owner, const std::string& folder, const std::string& reference);

/// Pixels on this screen for a length that was designed at 96 dots an inch.
int Scaled(int length);

/// Writes to the console that the program was started from, if there is one. False when there is none.
bool WriteToConsole(const std::string& text, bool failure);

}  // namespace glyphmotion
