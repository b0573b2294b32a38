// SPDX-License-Identifier: MIT
// The program as a module that is called with words as often as its caller likes.
#include <emscripten/emscripten.h>

#include <cstdio>
#include <exception>
#include <sstream>

#include "host/program/program.h"

/// Runs the program with words, each of which ends with a zero byte; their length in all. The program's exit code.
extern "C" EMSCRIPTEN_KEEPALIVE int GlyphmotionRun(const char* words, int length) {
  std::set_terminate(glyphmotion::EndWithoutMemory);
  std::vector<std::string> list;
  std::istringstream rest(std::string(words, static_cast<std::size_t>(length)));
  for (std::string word; std::getline(rest, word, '\0');) list.push_back(word);
  const int code = glyphmotion::RunProgram(list);
  std::fflush(stdout);
  return code;
}
