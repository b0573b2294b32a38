// SPDX-License-Identifier: MIT
// The full program. host/quick/main.cpp is what people start.
#include <exception>

#include "host/program/program.h"

namespace {

// Runs before the first static object that allocates.
[[gnu::constructor(101)]] void PrepareForLackOfMemory() { std::set_terminate(glyphmotion::EndWithoutMemory); }

}  // namespace

int main(int argc, char** argv) { return glyphmotion::Main(argc, argv); }
