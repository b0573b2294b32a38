// SPDX-License-Identifier: MIT
// Reading the dialog's controls while a frame is rendered: all that effects and the compositor need of a dialog.
#pragma once

#include <cstdint>
#include <string>

#include "image/colour.h"
#include "platform/dialog.h"
#include "platform/dialog_number.h"

namespace glyphmotion {

/// Added to a number edit's id to give that of its up-down, whose caption holds "minimum,maximum,default".
constexpr int kUpDownOffset = 10000;

/// A number edit's value, clamped to the range of its up-down.
int ReadNumber(const Dialog& dialog, int id);
/// Puts what ReadNumber gives into the edit, if it shows anything else.
void ShowReadNumber(Dialog& dialog, int id);
/// True if and only if the check state is 1.
bool ReadCheck(const Dialog& dialog, int id);
/// A colour button holds its value as decimal text.
Colour ReadColour(const Dialog& dialog, int id);
/// The selected item, -1 for none; the caller limits it to its own table.
int ReadSelection(const Dialog& dialog, int id);
/// A direction picker's index: the first field of its data block; 0 without one.
int ReadDirection(const Dialog& dialog, int id);
std::string ReadText(const Dialog& dialog, int id);

}  // namespace glyphmotion
