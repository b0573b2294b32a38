// SPDX-License-Identifier: MIT
// What became of one run of the program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace glyphmotion {

struct RunReport {
  std::string error;  ///< one sentence; empty when all went well
  int code = 0;       ///< an ExitCode, or 128 plus a signal's number
  std::vector<std::string> notes;

  // Of a run that wrote pictures; otherwise `format` is empty.
  std::string file;    ///< as it was named, "-" for standard output
  std::string format;  ///< "gif"; "folder" for a folder of pictures
  int width = 0, height = 0, frames = 0;
  std::int64_t duration = 0;  ///< milliseconds; 0 for one picture
  std::uint64_t bytes = 0;    ///< written, over all files of a folder
  int colours = -1;           ///< distinct ones that a viewer sees, by red, green and blue; -1: not counted
  std::int64_t time = 0;      ///< milliseconds that the run took
};

}  // namespace glyphmotion
