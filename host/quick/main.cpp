// SPDX-License-Identifier: MIT
// The program comes as two files. This one, `glyphmotion`, leaves out what few jobs need and every start and first
// build would pay for: subcommands, recordings, and the page's server, AVIF and VP9 with their thirty shared libraries.
// It passes such jobs on to `glyphmotion-full`.
#include <exception>

#include "host/program/program.h"
#include "host/quick/full_program.h"

namespace {

// Runs before the first static object that allocates.
[[gnu::constructor(101)]] void PrepareForLackOfMemory() { std::set_terminate(glyphmotion::EndWithoutMemory); }

}  // namespace

int main(int argc, char** argv) {
  if (glyphmotion::NeedsFullProgram(argc, argv)) return glyphmotion::RunFullProgram(argv);
  return glyphmotion::Main(argc, argv);
}
