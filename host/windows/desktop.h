// SPDX-License-Identifier: MIT
// The system's dialogs, for the host. Text and paths are UTF-8. `owner` may be null.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "image/colour.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

void ShowBox(HWND owner, const std::string& text, bool failure);
enum class Answer { Yes, No, Cancel };
Answer AskYesNoCancel(HWND owner, const std::string& text);

std::optional<std::string> AskPicture(HWND owner);
std::optional<std::string> AskPlugin(HWND owner);
std::optional<std::string> AskGifName(HWND owner, const std::string& start);

/// The chooser's custom colours start with an even selection of the palette, if any.
std::optional<Colour> AskColour(HWND owner, Colour start, std::span<const Rgb> palette);

/// Opens a page in `folder`, at a topic if the reference ("page#topic") names one. False when there is no such page, or
/// no program to show it.
bool OpenHelp(HWND owner, const std::string& folder, const std::string& reference);

/// Converts a length at 96 dpi to pixels of this screen.
int Scaled(int length);

/// Writes to the console that the program was started from. False when there is none.
bool WriteToConsole(const std::string& text, bool failure);

}  // namespace glyphmotion
