// SPDX-License-Identifier: MIT
// Numbers as text, with a decimal point whatever the process's locale.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Reads the decimal number that `text` begins with, as std::from_chars does. How many characters it takes; 0, with
/// `value` unchanged, when there is none or it is out of range.
std::size_t ReadNumber(std::string_view text, double& value) noexcept;

/// With six digits after the point, or as many as given.
std::string FixedText(double value, int digits = 6);

/// Six digits of it, without zeros at the end: "0.5", "1e+20".
std::string ShortText(double value);

/// The shortest text that reads back as the same value, as std::to_chars writes it.
std::string ShortestText(float value);

}  // namespace glyphmotion
