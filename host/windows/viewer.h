// SPDX-License-Identifier: MIT
// The window that plays an animation, in the middle of its field or, while a dialog covers that, beside the dialog.
#pragma once

#include <memory>
#include <string>

#include "host/recording/player.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// What shows where the animation is transparent.
enum class Field { Checkered, White, Black, Background };

/// Sent to the parent as WM_COMMAND with the viewer's id and this code when another frame shows, or a pause begins or
/// ends.
constexpr int kViewerChanged = 1;
/// Likewise, when the hint was clicked.
constexpr int kViewerBegin = 2;

HWND CreateViewer(HWND parent, int id);
/// Plays from the first frame; null shows the hint for beginners instead.
void ShowInViewer(HWND viewer, std::shared_ptr<const Animation> animation);
/// The dialog that lies over the viewer; null when none does any more.
void SetCoveringDialog(HWND viewer, HWND dialog);
void SetField(HWND viewer, Field field);
Field FieldOf(HWND viewer);
void TogglePause(HWND viewer);
void StepFrame(HWND viewer, int direction);
/// Null when nothing is shown.
const Player* PlayerOf(HWND viewer);

}  // namespace glyphmotion
