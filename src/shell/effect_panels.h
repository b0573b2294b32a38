// SPDX-License-Identifier: MIT
// The effects' panels in the main dialog: each exists from the start, and that of the chosen effect is visible.
#pragma once

#include "platform/dialog.h"
#include "resources/templates.h"

namespace glyphmotion {

/// Connects a control of the main dialog or a panel to its family and to its variable, from which it takes its value.
void InstallControl(Dialog& dialog, const ControlTemplate& control);

/// Creates a panel whole; false when out of memory.
bool InstallPanel(Dialog& dialog, const DialogTemplate& panel);

/// The index of the effect in the dialog's list, always that of a row.
int ChosenEffect(const Dialog& dialog);

/// Shows the panel of an effect and hides the others.
void ShowPanel(Dialog& dialog, int effect);

/// Frees the panels' materials and writes their files.
void DestroyPanels(Dialog& dialog);

}  // namespace glyphmotion
