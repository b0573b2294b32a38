// SPDX-License-Identifier: MIT
// In the tests of this folder a plus before a field of a packed record makes a value of it, as the test macros bind
// references.
#pragma once

#include <string>

#include "image/packed_dib.h"

namespace glyphmotion {

/// A path in this process's own scratch folder, which is emptied at its end.
std::string TemporaryFile(const std::string& name);
std::string FileBytes(const std::string& path);
/// The same with every line ending in a line feed alone, as a text file's lines end as the machine has it.
std::string FileText(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);

/// All pixels by value, row by row from the top.
std::string PixelsOf(const PackedDib& dib);

}  // namespace glyphmotion
