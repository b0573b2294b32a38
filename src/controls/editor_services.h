// SPDX-License-Identifier: MIT
// What the editors' windows need from whoever runs the dialog: help and pictures come from the host, which the controls
// do not know.
#pragma once

#include <span>

#include "image/packed_dib.h"
#include "platform/dialog.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

struct EditorServices {
  /// Opens the help page at a topic ("GRADIENT"); a refusal has been told when this returns.
  void (*showHelp)(Dialog& owner, const char* topic) = nullptr;
  /// Lets the user choose a picture file and reads it. Empty when cancelled or when it cannot be read.
  PackedDib (*choosePicture)(Dialog& owner) = nullptr;
};

/// Replaces the current run's services; missing ones do nothing.
void SetEditorServices(const EditorServices& services);

void ShowHelpTopic(Dialog& owner, const char* topic);
PackedDib ChoosePicture(Dialog& owner);

/// The menu of a list's selected item: at the pointer, or below the item when a key asked for it. The id chosen, or 0.
int PopupItemMenu(Dialog& dialog, int list, bool byKey, std::span<const MenuItem> items);

/// Runs an editor's window over the dialog that runs. True on OK; a lack of memory is told over `owner` and counts as
/// cancelled.
bool RunEditor(Dialog& owner, const DialogTemplate& editor, DialogProcedure procedure, void* parameter);

}  // namespace glyphmotion
