// SPDX-License-Identifier: MIT
// The window that plays an animation, in its middle or, while a dialog covers that, beside the dialog.
#pragma once

#include <memory>
#include <string>

#include "host/recording/player.h"
#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// What is shown where the animation is transparent.
enum class Field { Checkered, White, Black, Background };

/// Sent to the parent as WM_COMMAND with the viewer's id and this code when the frame changes, or a pause begins or
/// ends.
constexpr int kViewerChanged = 1;
/// Likewise, when the hint was clicked.
constexpr int kViewerBegin = 2;

HWND CreateViewer(HWND parent, int id);
/// Plays from the first frame; null shows a hint for beginners instead.
void ShowInViewer(HWND viewer, std::shared_ptr<const Animation> animation);
/// Sets the dialog that covers the viewer; null when there is none.
void SetCoveringDialog(HWND viewer, HWND dialog);
void SetField(HWND viewer, Field field);
Field FieldOf(HWND viewer);
void TogglePause(HWND viewer);
void StepFrame(HWND viewer, int direction);
/// Null when nothing is shown.
const Player* PlayerOf(HWND viewer);

}  // namespace glyphmotion
