// SPDX-License-Identifier: MIT
// Text is UTF-8 inside the program and UTF-16 in system calls.
#pragma once

#include <string>
#include <string_view>

namespace glyphmotion {

/// Ill-formed parts become the replacement character. Fails only when out of memory.
std::wstring WideOf(std::string_view text);
std::string NarrowOf(std::wstring_view text);

}  // namespace glyphmotion
