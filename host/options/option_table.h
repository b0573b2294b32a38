// SPDX-License-Identifier: MIT
// Every option of the program, one row each: the command line, its help, the manual page and the completions read it.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace glyphmotion {

struct OptionRow {
  const char* names;              ///< "-s,--size"; a pair of flags as "--bold,!--no-bold"
  const char* form;               ///< what the value looks like, "FILE"; null for a flag
  const char* group;              ///< heading in the help
  const char* help;               ///< one sentence without its period
  const char* key = nullptr;      ///< the setting that it makes, by key or "@name"
  long minimum = 0, maximum = 0;  ///< of a whole number; equal: the value is not such a number
  /// What a flag sets: its value, or "01" for a pair of flags.
  const char* value = nullptr;
  /// The words that the value can be, by commas; empty: any. A flag with words takes one of them after "=", or none.
  const char* words = "";
  bool repeats = false;  ///< may be given several times
};

/// A first word that asks for something else than an animation.
struct CommandRow {
  const char* name;
  const char* form;        ///< what follows it
  const char* help;        ///< one sentence without its period
  const char* words = "";  ///< what may follow it, by commas
  bool takesFile = false;  ///< a file or folder may follow it
};
std::span<const CommandRow> CommandRows();

/// Groups in the order of the help. That of kHostGroup is shown by "help hosts" alone.
constexpr const char* kHostGroup = "For hosts and tests";
constexpr const char* kHelpGroup = "Help";    ///< what the program prints
constexpr const char* kBatchGroup = "Batch";  ///< of BatchRows
std::span<const char* const> OptionGroups();
std::span<const OptionRow> OptionRows();
/// The options of "batch", which are its own.
std::span<const OptionRow> BatchRows();
std::span<const char* const> ListNames();

/// "--size" of "-s,--size"; "--bold" of a pair.
std::string LongName(const OptionRow& row);
/// "--no-bold", or empty.
std::string NegativeName(const OptionRow& row);
/// 's', or 0.
char ShortName(const OptionRow& row);
/// The words of a row, one by one.
std::vector<std::string> WordsOf(const OptionRow& row);
/// The row of a long name with or without its dashes, a pair's second name included; null for none.
const OptionRow* FindOption(const std::string& name);

}  // namespace glyphmotion
