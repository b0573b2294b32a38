// SPDX-License-Identifier: MIT
// The command line: the words after the program's name, sorted by the options of the table and read.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/options/arguments.h"
#include "host/options/option_table.h"
#include "host/options/typed_words.h"

namespace glyphmotion {

/// Throws UsageError for unknown options, values that are missing or empty, and a second text; `remedy` says what to do
/// about words too many. What follows "--" is text, whatever it looks like.
TypedWords SortWords(std::vector<std::string> words, std::span<const OptionRow> rows = OptionRows(),
                     const std::string& remedy = "put a text of several words in quotation marks");

/// A parsed command line: arguments to run with, or a text to print and an exit code.
struct ParsedArguments {
  std::optional<Arguments> arguments;
  std::string text;   ///< for standard output: help, version
  std::string error;  ///< one sentence for standard error
  int exitCode = 0;   ///< without arguments: 0 done, 2 bad usage
};

/// Parses the words after the program's name. Never exits, never prints.
ParsedArguments ParseArguments(std::vector<std::string> words, const Catalogue& catalogue);

}  // namespace glyphmotion
