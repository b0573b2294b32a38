// SPDX-License-Identifier: MIT
// Completions of shells, written from the tables of options and commands.
#pragma once

#include <string>

namespace glyphmotion {

/// A script that completes commands, options and their words, for "bash", "zsh" or "fish"; empty for any other shell.
std::string Completion(const std::string& shell);

}  // namespace glyphmotion
