// SPDX-License-Identifier: MIT
// The manual page, written from the tables of options and commands.
#pragma once

#include <string>

namespace glyphmotion {

/// A page of section 1 for man(1).
std::string ManualPage();

}  // namespace glyphmotion
