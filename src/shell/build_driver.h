// SPDX-License-Identifier: MIT
// The function behind the Build and Test buttons.
#pragma once

#include "glyphmotion/host_contract.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// Reads the output options, runs the chosen effect, reduces the colours, hands the frames to the host and frees
/// everything. Every failure is reported in a message box; the dialog then stays open. `test` unchecks Alpha
/// transparency for the run and opens a test task. Returns true when the host got the finished task; ending the dialog
/// after a Build is up to the caller.
bool BuildDriver(Dialog& dialog, const HostCallTable& hostCalls, bool test);

}  // namespace glyphmotion
