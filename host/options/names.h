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

/// The one of `names` that is nearest to `word` by edits, case ignored; empty when none is near.
std::string NearestName(const std::string& word, const std::vector<std::string>& names);

/// "; did you mean ...?" or nothing.
std::string Suggestion(const std::string& word, const std::vector<std::string>& names);

}  // namespace glyphmotion
