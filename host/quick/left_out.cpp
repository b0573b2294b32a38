// SPDX-License-Identifier: MIT
#include "host/program/program.h"
#include "host/recording/recorder.h"

namespace glyphmotion {

// main() has passed the subcommands on, and runs that are recorded.
int RunProgram(const std::vector<std::string>& words) { return RunLine(words); }

Recorder::Recorder(const std::string&, std::string&) {}
void Recorder::Call(const HostCallEvent&) {}
std::string Recorder::End(const RenderResult&) { return {}; }

}  // namespace glyphmotion
