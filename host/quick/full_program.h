// SPDX-License-Identifier: MIT
#pragma once

namespace glyphmotion {

/// The arguments begin with a subcommand, or ask for a file of a format that only the full program writes. True for a
/// few others as well, which costs them ten milliseconds.
bool NeedsFullProgram(int argc, char** argv);

/// Replaces this process; standard streams and environment remain. Returns an exit code if the file is missing, after a
/// message on standard error.
int RunFullProgram(char** argv);

}  // namespace glyphmotion
