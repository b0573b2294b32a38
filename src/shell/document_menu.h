// SPDX-License-Identifier: MIT
// The document of the main dialog: its menu and its file dialogs. CurrentFileName and OpenPath name it and its folder.
#pragma once

#include "platform/dialog.h"

namespace glyphmotion {

/// The size of the file dialogs in pixels, limited to the screen, until a user changes it.
void SetFileDialogSize(int width, int height);

/// Makes an untitled document of the documents folder the current one.
void ForgetDocument();

/// The menu of the Open/Save button; what is chosen is posted as a command.
void ShowDocumentMenu(Dialog& dialog);

/// The menu's commands. An untitled document is saved under a name that the user chooses.
void OpenDocument(Dialog& dialog);
void SaveCurrentDocument(Dialog& dialog);
void SaveDocumentAs(Dialog& dialog);

}  // namespace glyphmotion
