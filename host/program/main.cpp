// SPDX-License-Identifier: MIT
#include <exception>

#include "host/program/interrupts.h"
#include "host/program/program.h"
#include "platform/heap.h"

namespace {

// Runs before the first static object that allocates.
[[gnu::constructor(101)]] void PrepareForLackOfMemory() { std::set_terminate(glyphmotion::EndWithoutMemory); }

}  // namespace

int main(int argc, char** argv) {
  glyphmotion::OpenStandardStreams();
  glyphmotion::KeepFreedMemory();
  glyphmotion::CatchInterrupts();
  const int code = glyphmotion::RunMain(argc, argv);
  return code != glyphmotion::kExitDone && glyphmotion::InterruptedCode() ? glyphmotion::InterruptedCode() : code;
}
