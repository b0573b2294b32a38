// SPDX-License-Identifier: MIT
// Names as people type them.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

/// "a, b, c"
std::string Join(const std::vector<std::string>& names);

/// "Background Hyperspace" as the command line writes it: "background-hyperspace".
std::string OptionForm(const std::string& name);

}  // namespace glyphmotion
