// SPDX-License-Identifier: MIT
#include "host/quick/full_program.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "host/program/program.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

bool EndsWith(std::string_view word, const char* end) {
  const std::size_t length = std::strlen(end);
  return word.size() >= length && strncasecmp(word.data() + word.size() - length, end, length) == 0;
}

}  // namespace

bool NeedsFullProgram(int argc, char** argv) {
  if (argc < 2) return false;
  for (const std::string_view command : {"edit", "batch", "gallery", "swatch", "help", "man", "completion"}) {
    if (command == argv[1]) return true;
  }
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (EndsWith(word, "avif") || EndsWith(word, "webm") || word == "--record" || word.starts_with("--record="))
      return true;
  }
  return false;
}

int RunFullProgram(char** argv) {
  const std::string own = OwnFolder();
  for (const char* folder : {"", GLYPHMOTION_FULL_PROGRAM_FOLDER}) {
    execv((own + folder + "glyphmotion-full").c_str(), argv);
  }
  std::fprintf(
      stderr,
      "glyphmotion: error: glyphmotion-full, the second file of the program, is missing in %s and in %s; install "
      "Glyphmotion again\n",
      own.c_str(), (own + GLYPHMOTION_FULL_PROGRAM_FOLDER).c_str());
  return kExitFailed;
}

}  // namespace glyphmotion
