// SPDX-License-Identifier: MIT
// The templates of the small dialogs: messages, the name prompt, registration, the about box.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// Ids that the system's own boxes have too; Cancel comes from Escape and from the title bar whether or not there is
/// such a button.
namespace BoxControl {
constexpr int Ok = 1, Cancel = 2, Yes = 6, No = 7, Picture = 20, Field = 100, SecondField = 102;
constexpr int MessageText = 0xFFFF;
}  // namespace BoxControl

/// Messages: the place of the text is the smallest, and everything moves when it grows.
extern const DialogTemplate kMessageBox, kQuestionBox;

extern const DialogTemplate kNamePrompt, kRegistrationDialog, kAboutBox;

}  // namespace glyphmotion
