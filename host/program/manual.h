// SPDX-License-Identifier: MIT
// The manual page and the completions of shells, written from the table of options.
#pragma once

#include <string>

namespace glyphmotion {

/// A page of section 1 for man(1).
std::string ManualPage();

/// A script that completes options and their words, for "bash", "zsh" or "fish"; empty for any other shell.
std::string Completion(const std::string& shell);

}  // namespace glyphmotion
