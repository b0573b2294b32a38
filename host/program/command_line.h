// SPDX-License-Identifier: MIT
// The words after the program's name, sorted by the options of the table.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/program/option_table.h"

namespace glyphmotion {

/// What is wrong with the arguments, in one sentence; thrown by the functions that read them.
struct UsageError {
  std::string sentence;
};
[[noreturn]] void Refuse(const std::string& sentence);

/// Everything as the user typed it. Names are those of the table, "--size"; the functions take no others.
class TypedWords {
 public:
  std::optional<std::string> text;

  bool Has(const std::string& name) const { return values_.contains(name); }
  /// The value of an option; empty when it was not given.
  const std::string& Value(const std::string& name) const;
  const std::vector<std::string>& Values(const std::string& name) const;
  /// A flag: nothing when it was not given, false for the second name of a pair.
  std::optional<bool> Flag(const std::string& name) const;
  bool IsOn(const std::string& name) const { return Flag(name).value_or(false); }

 private:
  friend TypedWords SortWords(std::vector<std::string> words, std::span<const OptionRow> rows);
  std::map<std::string, std::vector<std::string>> values_;
};

/// Throws UsageError for words that are no options, values that are missing or empty, and a second text. What follows
/// "--" is text, whatever it looks like.
TypedWords SortWords(std::vector<std::string> words, std::span<const OptionRow> rows = OptionRows());

}  // namespace glyphmotion
