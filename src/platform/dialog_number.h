// SPDX-License-Identifier: MIT
// How every machine's dialogs here read a number.
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

/// The decimal number at the start of a control's text, as GetNumber gives it: leading blanks skipped, 0 when there is
/// none or it does not fit 32 bits; a minus counts only when `isSigned`.
std::int64_t NumberOfText(const std::string& text, bool isSigned) noexcept;

}  // namespace glyphmotion
