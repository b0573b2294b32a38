// SPDX-License-Identifier: MIT
#include "host/program/program.h"
#include "platform/heap.h"

int main(int argc, char** argv) {
  glyphmotion::KeepFreedMemory();
  glyphmotion::CatchInterrupts();
  return glyphmotion::RunProgram({argv + (argc > 0 ? 1 : 0), argv + argc});
}
