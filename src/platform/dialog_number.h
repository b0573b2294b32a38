// SPDX-License-Identifier: MIT
// How dialogs read numbers and their ranges, on every machine.
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

struct NumberRange {
  int minimum = 0, maximum = 100, initial = 0;
};
/// The range in an up-down's text, "minimum,maximum,default"; 0 to 100 when it cannot be parsed.
NumberRange ParseRange(const std::string& caption) noexcept;

/// The decimal number at the start of a control's text, as GetNumber gives it: leading blanks skipped, 0 when there is
/// none or it does not fit 32 bits; a minus counts only when `isSigned`.
std::int64_t NumberOfText(const std::string& text, bool isSigned) noexcept;

}  // namespace glyphmotion
