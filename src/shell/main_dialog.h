// SPDX-License-Identifier: MIT
// Dialog 1000: the plug-in's whole user interface.
#pragma once

#include <string>

#include "glyphmotion/host_contract.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The dialog's procedure; the parameter of its kMessageInitialise is the const HostCallTable*.
std::int64_t MainDialogProcedure(Dialog& dialog, const Message& message);

/// Implements PLUGIN16DoBuild within the current run, which must be new; Render() prepares its run first. Returns 1
/// once the dialog has ended, 0 if the host is refused. May throw.
int RunMainDialog(void* ownerWindow, const HostCallTable* table);

}  // namespace glyphmotion
