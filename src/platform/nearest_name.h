// SPDX-License-Identifier: MIT
// The name that somebody may have meant.
#pragma once

#include <string>
#include <vector>

namespace glyphmotion {

/// The one of `names` that is nearest to `word` by edits, case ignored; empty when none is near.
std::string NearestName(const std::string& word, const std::vector<std::string>& names);

/// "; did you mean ...?" or nothing.
std::string Suggestion(const std::string& word, const std::vector<std::string>& names);

}  // namespace glyphmotion
