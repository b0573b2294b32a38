// SPDX-License-Identifier: MIT
// What the program makes of some words, for others to compare with.
#pragma once

#include <gtest/gtest.h>

#include "host/host_helpers.h"
#include "host/program/program.h"

namespace glyphmotion {

using Folder = TemporaryFolder;

inline std::string BytesOf(const std::string& path) { return testing::ReadText(path); }

inline std::string TextOf(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

using Words = std::vector<std::string>;

/// What the program writes for these words.
inline std::string ProgramBytes(const Folder& folder, Words words, const std::string& name) {
  words.insert(words.end(), {"-o", folder / name});
  EXPECT_EQ(RunWords(words), "");
  return BytesOf(folder / name);
}

}  // namespace glyphmotion
