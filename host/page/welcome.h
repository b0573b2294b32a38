// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

/// What a new document shows, as options of the command line.
inline std::vector<std::string> WelcomeWords() {
  return {"Glyphmotion",  "-e",
          "vortex",       "-s",
          "72",           "--bold",
          "--pad",        "12",
          "--fill",       "fountain:Candy,rotation=90",
          "--background", "#14152b",
          "--shadow",     "#000000",
          "--set",        "Style008OutlineEnable=0"};
}

}  // namespace glyphmotion
