// SPDX-License-Identifier: MIT
#pragma once

#include "host/windows/options.h"

namespace glyphmotion {

/// Opens the window and runs it to its end. Gives the program's exit code: with `once`, 0 when a GIF was written and 1
/// when not; otherwise 0 unless the window could not be opened.
int RunHost(const HostOptions& options);

/// Tells of a failure: on the console with `once`, if there is one, otherwise in a box.
void TellFailure(const HostOptions& options, void* owner, const std::string& sentence);

}  // namespace glyphmotion
