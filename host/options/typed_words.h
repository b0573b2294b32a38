// SPDX-License-Identifier: MIT
// Options as their user gave them, before anyone has judged their values.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace glyphmotion {

/// What is wrong with the arguments, in one sentence; thrown by the functions that read them.
struct UsageError {
  std::string sentence;
};
[[noreturn]] void Refuse(const std::string& sentence);

/// Names are those of the table, "--size"; the functions take no others.
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

  /// Replaces the values of an option; a flag's are "1" and "0". None: as if it had not been given.
  void Put(const std::string& name, std::vector<std::string> values);

 private:
  std::map<std::string, std::vector<std::string>> values_;
};

}  // namespace glyphmotion
