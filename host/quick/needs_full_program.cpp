// SPDX-License-Identifier: MIT
// Exits with 0 if `glyphmotion` with the same arguments passes them on to the full program.
#include "host/quick/full_program.h"

int main(int argc, char** argv) { return glyphmotion::NeedsFullProgram(argc, argv) ? 0 : 1; }
