// SPDX-License-Identifier: MIT
// The libraries that ship with the program. They are copied to the data folder on first use, where people add to them.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

constexpr char kTextureLibraryName[] = "tlmplgm4.fft";
constexpr char kTileLibraryName[] = "tlmplgm4.mtx";
constexpr char kFountainLibraryName[] = "FountainLibrary.fll";

/// The path of a library: in the data folder, to which the shipped one is copied when it is not there yet; where there
/// is no data folder or it cannot be written, the shipped file itself. Where neither exists, the place in the data
/// folder, which may be empty.
std::string LibraryPath(const std::string& name);

/// Where a library is written: its place in the data folder. Empty when it is read from elsewhere: the shipped file is
/// everybody's.
std::string LibraryPathToWrite(const std::string& name);

/// Names of the groups in the data folder with this extension (".fft"), without it, sorted.
std::vector<std::string> LibraryGroups(const std::string& extension);

}  // namespace glyphmotion
