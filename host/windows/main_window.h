// SPDX-License-Identifier: MIT
#pragma once

#include "host/windows/options.h"

namespace glyphmotion {

/// Opens the window and runs it until it is closed. Returns the program's exit code: with `once`, 0 when a GIF was
/// written and 1 when not; otherwise 0 unless the window could not be opened.
int RunHost(const HostOptions& options);

}  // namespace glyphmotion
