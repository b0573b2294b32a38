// SPDX-License-Identifier: MIT
// The string table: texts of the dialogs and messages by number.
#pragma once

#include <string>

namespace glyphmotion {

/// String `number`, or "String table error - this application may be damaged" when there is none.
std::string LoadText(int number);

constexpr int kTextMemoryError = 6;  ///< "Memory error", the general failure text

}  // namespace glyphmotion
