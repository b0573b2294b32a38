// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace glyphmotion {

/// The files of a folder as an archive, sorted by name and not compressed again. Empty when done, else one sentence.
std::string ZipFolder(const std::string& folder, const std::string& path);

}  // namespace glyphmotion
