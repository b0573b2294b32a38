// SPDX-License-Identifier: MIT
// Services that the editors' windows need from the owner of the dialog: help and pictures come from the host, which the
// controls do not know.
#pragma once

#include <span>

#include "image/packed_dib.h"
#include "platform/dialog.h"
#include "platform/shell_ui.h"

namespace glyphmotion {

struct EditorServices {
  /// Opens the help page at a topic ("GRADIENT"); reports a failure itself.
  void (*showHelp)(Dialog& owner, const char* topic) = nullptr;
  /// Lets the user choose a picture file and loads it. Empty when cancelled or when it cannot be read.
  PackedDib (*choosePicture)(Dialog& owner) = nullptr;
};

/// Replaces the current run's services; empty ones do nothing.
void SetEditorServices(const EditorServices& services);

void ShowHelpTopic(Dialog& owner, const char* topic);
PackedDib ChoosePicture(Dialog& owner);

/// The menu of a list's selected item: at the pointer, or below the item if opened by key. The id chosen, or 0.
int PopupItemMenu(Dialog& dialog, int list, bool byKey, std::span<const MenuItem> items);

/// Runs an editor's window over the running dialog. True on OK; running out of memory is reported over `owner` and
/// counts as cancelled.
bool RunEditor(Dialog& owner, const DialogTemplate& editor, DialogProcedure procedure, void* parameter);

}  // namespace glyphmotion
