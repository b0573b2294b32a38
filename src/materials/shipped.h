// SPDX-License-Identifier: MIT
// The libraries that ship with the program, and the user's own. Shipped ones are read where they are installed. The
// user's own copy, in the data folder, comes into being with the first edit; from then on the editors read that one.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

constexpr char kTextureLibraryName[] = "tlmplgm4.fft";
constexpr char kTileLibraryName[] = "tlmplgm4.mtx";
constexpr char kFountainLibraryName[] = "FountainLibrary.fll";

/// The shipped library of this name; empty where none is installed.
std::string ShippedLibraryPath(const std::string& name);
/// The user's own place for it, whether or not there is such a file; empty without a data folder.
std::string OwnLibraryPath(const std::string& name);
/// The one that editors show: the user's own, or else the shipped one. Where neither exists, the user's own place.
std::string LibraryPath(const std::string& name);
/// The path by which a material refers to a library: the user's own place, or without a data folder the shipped file. A
/// tile that is not found there comes from the shipped library of the same name.
std::string LibraryReference(const std::string& name);
/// Where an edited library is written: the user's own place, whose folder is made. Empty when that cannot be.
std::string LibraryPathToWrite(const std::string& name);
/// The sentence for a shipped library that is not installed, with the folders in which it was looked for.
std::string NoShippedLibrary(const std::string& name);

/// Names of the groups in the data folder with this extension (".fft"), without it, sorted.
std::vector<std::string> LibraryGroups(const std::string& extension);

}  // namespace glyphmotion
