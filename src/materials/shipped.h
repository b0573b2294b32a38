// SPDX-License-Identifier: MIT
// The libraries that ship with the program, and the user's own. Shipped ones are read where they are installed. The
// first edit creates the user's own copy in the data folder; from then on the editors read that one.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

constexpr char kTextureLibraryName[] = "tlmplgm4.fft";
constexpr char kTileLibraryName[] = "tlmplgm4.mtx";
constexpr char kFountainLibraryName[] = "FountainLibrary.fll";

/// The shipped library of this name; empty where none is installed.
std::string ShippedLibraryPath(const std::string& name);
/// The path of the user's own copy, whether or not it exists; empty without a data folder.
std::string OwnLibraryPath(const std::string& name);
/// The library that editors show: the user's own copy, or else the shipped one; if neither exists, the path of the
/// user's own.
std::string LibraryPath(const std::string& name);
/// The path by which a material refers to a library: that of the user's own copy, or without a data folder the shipped
/// file. A tile that is not found there is loaded from the shipped library of the same name.
std::string LibraryReference(const std::string& name);
/// The path to which an edited library is written, in the data folder, which is created. Empty on failure.
std::string LibraryPathToWrite(const std::string& name);
/// The message for a shipped library that is not installed, with the folders that were searched.
std::string NoShippedLibrary(const std::string& name);

/// Names of the groups in the data folder with this extension (".fft"), without it, sorted.
std::vector<std::string> LibraryGroups(const std::string& extension);

}  // namespace glyphmotion
