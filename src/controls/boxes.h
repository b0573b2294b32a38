// SPDX-License-Identifier: MIT
// The program's own message box and name prompt, used by ShowMessage and AskName where there is a screen. They need no
// prior setup.
#pragma once

#include <optional>
#include <string>

#include "platform/dialog.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

/// Shows the message, wrapped to a readable width, with its picture and buttons, over `owner` or else over the host's
/// `window`, which may also be null. Escape means No, or OK if that is the only button. Returns true for Yes and OK;
/// nothing when the box could not be shown.
std::optional<bool> RunMessageBox(Dialog* owner, void* window, const MessageQuestion& question);

/// See AskName.
std::optional<std::string> RunNamePrompt(Dialog* owner, const std::string& title, const std::string& start);

/// Makes ShowMessage and AskName use these.
void UseOwnBoxes();

/// Paints the picture of a message, a sign on a disc or, for a warning, on a triangle, at the size of the request.
void PaintMessagePicture(const DrawRequest& request, MessageIcon icon);

}  // namespace glyphmotion
