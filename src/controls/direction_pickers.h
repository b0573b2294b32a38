// SPDX-License-Identifier: MIT
// The four direction pickers: cells of 25 pixels with an arrow each, of which one is pressed. A picker's user data is a
// movable block that starts with the 32-bit index of that cell.
#pragma once

#include "controls/families.h"

namespace glyphmotion {

/// SDWDIR: 0, 1, 2 along the top row, 3 right, 4 left, 5, 6, 7 along the bottom row; no cell in the centre.
extern const ControlFamily kShadowDirectionFamily;
/// SCRL4D: a cross of 0 up, 1 right, 2 left, 3 down.
extern const ControlFamily kScrollFourFamily;
/// SCRL2D: 0 left, 1 right, side by side.
extern const ControlFamily kScrollTwoFamily;
/// SCRLHV: 0 horizontal, 1 vertical, side by side.
extern const ControlFamily kScrollAxisFamily;

constexpr int kPickerCell = 25;  ///< pixels

bool IsPicker(ControlKind kind) noexcept;

/// The cell at a position in pixels of the control, -1 if there is none.
int PickerCellAt(ControlKind kind, int x, int y) noexcept;

/// Gives a picker its block (which its family frees on kMessageDestroy) and binds it to a variable, which may be null.
/// When out of memory the picker reads as 0 and stores nothing.
void AttachPicker(Dialog& dialog, int id, Variable* variable);

/// The variable a picker is bound to, or null.
Variable* VariableOfPicker(const Dialog& dialog, int id) noexcept;

/// Presses a cell; an invalid index presses 0. Sends no notification.
void SetDirection(Dialog& dialog, int id, int index);

}  // namespace glyphmotion
