// SPDX-License-Identifier: MIT
// The options without a command line: by bare name, with sentences that cite no switches.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/options/typed_words.h"

namespace glyphmotion {

/// The long names, without dashes, of the options that describe a picture, and "text". Left out are the output, what
/// the program prints, and what tests of hosts need.
std::vector<std::string> LibraryOptionNames();

/// The names of the effects as the option takes them.
std::vector<std::string> EffectOptionNames();

/// Gives an option (not "text") a value, "1" or "0" for a flag; an option that repeats gets another one. Nothing: as if
/// it had never been given. Throws UsageError when there is no such option, or when the value is wrong whatever the
/// other options are.
void SetLibraryOption(TypedWords& typed, const std::string& name, const std::optional<std::string>& value);

/// A sentence of ReadOptions or of a run without dashes and references to lists.
std::string InLibraryTerms(std::string sentence);

}  // namespace glyphmotion
