// SPDX-License-Identifier: MIT
// Text is UTF-8 inside the program and UTF-16 at the system's door.
#pragma once

#include <string>
#include <string_view>

namespace glyphmotion {

/// Ill-formed text gets the replacement character where it is so; nothing fails but for memory.
std::wstring WideOf(std::string_view text);
std::string NarrowOf(std::wstring_view text);

}  // namespace glyphmotion
