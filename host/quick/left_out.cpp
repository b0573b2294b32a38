// SPDX-License-Identifier: MIT
#include "host/program/program.h"

namespace glyphmotion {

// main() has passed the subcommands on.
int RunProgram(const std::vector<std::string>& words) { return RunLine(words); }

}  // namespace glyphmotion
