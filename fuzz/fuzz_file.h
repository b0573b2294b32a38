// SPDX-License-Identifier: MIT
// An input as a file, for readers that take a path.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace glyphmotion::fuzz {

/// The path of a file of this process with the bytes given; the next call overwrites it.
inline const std::string& FileOf(const std::uint8_t* data, std::size_t size) {
  static const std::string path = "/tmp/glyphmotion-fuzz-" + std::to_string(getpid());
  if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, file);
    std::fclose(file);
  }
  return path;
}

}  // namespace glyphmotion::fuzz
