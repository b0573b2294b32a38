// SPDX-License-Identifier: MIT
// The program's own message box and name prompt, which the desktop's ShowMessage and AskName run where there is a
// screen. They need nothing started.
#pragma once

#include <optional>
#include <string>

#include "platform/dialog.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

/// The message, wrapped to a readable width, with its picture and buttons, over `owner` or else over the host's
/// `window`, which may be null too. Escape is No, or the OK of a message that has no other button. The answer, true for
/// Yes and OK; nothing when the box could not be shown.
std::optional<bool> RunMessageBox(Dialog* owner, void* window, const MessageQuestion& question);

/// As AskName.
std::optional<std::string> RunNamePrompt(Dialog* owner, const std::string& title, const std::string& start);

/// Has the desktop show these.
void UseOwnBoxes();

/// The picture of a message: a sign on a disc, or on a triangle for a warning. As large as the request.
void PaintMessagePicture(const DrawRequest& request, MessageIcon icon);

}  // namespace glyphmotion
