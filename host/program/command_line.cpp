// SPDX-License-Identifier: MIT
#include "host/program/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>

#include "glyphmotion/version.h"
#include "host/options/option_table.h"
#include "host/program/help.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

// The option that a word names, with or without a value after "="; null for none.
const OptionRow* RowOf(const std::string& word, std::span<const OptionRow> rows) {
  const std::string name = word.substr(0, word.find('='));
  for (const OptionRow& row : rows) {
    if (name == LongName(row) || (!name.empty() && name == NegativeName(row))) return &row;
    if (name.size() == 2 && name[0] == '-' && name[1] == ShortName(row)) return &row;
  }
  return nullptr;
}

std::string ExtraArgument(const std::string& word, const std::string& remedy) {
  return "unexpected argument '" + word + "'; " + remedy;
}

// A word that is neither an option nor a text.
std::string UnknownWord(const std::string& word, std::span<const OptionRow> rows, const std::string& remedy) {
  if (word.size() < 2 || word[0] != '-') return ExtraArgument(word, remedy);
  if (RowOf(word, OptionRows())) return "'" + word + "' cannot be used here; " + remedy;
  std::vector<std::string> names;
  for (const OptionRow& row : rows) {
    names.push_back(LongName(row));
    if (const std::string negative = NegativeName(row); !negative.empty()) names.push_back(negative);
  }
  const std::string near = Suggestion(word.substr(0, word.find('=')), names);
  return "there is no option '" + word + "'" + (near.empty() ? "; see --help" : near);
}

// CLI11's error as one sentence of ours.
std::string SentenceOf(const CLI::ParseError& error) {
  std::string text = error.what();
  std::replace(text.begin(), text.end(), '\n', ' ');
  // "--output: 1 required FILE missing"
  if (const auto colon = text.find(": 1 required "); text.rfind("--", 0) == 0 && colon != std::string::npos)
    return text.substr(0, colon) + " needs a value after it; see --help";
  // "--size: At Most 1 required but received 2"
  if (const auto colon = text.find(": At Most 1 required"); text.rfind("--", 0) == 0 && colon != std::string::npos)
    return text.substr(0, colon) + " is given more than once; use it once";
  // "Could not convert: --bold = maybe"; numbers are converted by us, so this is a switch
  if (const std::string start = "Could not convert: "; text.rfind(start, 0) == 0)
    return "'" + text.substr(start.size()) + "' is not allowed: a switch takes no value; see --help";
  return text + "; see --help";
}

// CLI11 takes an option for the value of the one before it, and "--bold=" for "--bold".
void CheckThatValuesFollow(const std::vector<std::string>& words, std::span<const OptionRow> rows) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const OptionRow* row = RowOf(words[i], rows);
    if (!row) continue;
    if (!row->form && words[i].ends_with('=')) Refuse("'" + words[i] + "' has an empty value; leave the '=' out");
    if (!row->form || words[i].find('=') != std::string::npos || ++i == words.size()) continue;
    if (RowOf(words[i], rows))
      Refuse(LongName(*row) + " needs a value after it, but '" + words[i] + "' follows; see --help");
  }
}

}  // namespace

TypedWords SortWords(std::vector<std::string> words, std::span<const OptionRow> rows, const std::string& remedy) {
  TypedWords typed;
  CLI::App app;
  app.set_help_flag();
  app.allow_extras();
  app.add_option("text", typed.text);
  std::vector<std::vector<std::string>> values(rows.size());
  std::vector<std::int64_t> flags(rows.size());
  std::vector<std::string> flagWords(rows.size());  // of flags that take one
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows[i].form) {
      *rows[i].words ? app.add_flag(rows[i].names, flagWords[i]) : app.add_flag(rows[i].names, flags[i]);
      continue;
    }
    app.add_option(rows[i].names, values[i])
        ->option_text(rows[i].form)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(rows[i].repeats ? CLI::MultiOptionPolicy::TakeAll : CLI::MultiOptionPolicy::Throw);
  }
  const auto dashes = std::find(words.begin(), words.end(), "--");
  std::vector<std::string> texts(dashes == words.end() ? dashes : dashes + 1, words.end());
  words.erase(dashes, words.end());
  CheckThatValuesFollow(words, rows);
  std::reverse(words.begin(), words.end());  // CLI11 takes them last first
  try {
    app.parse(words);
  } catch (const CLI::ParseError& error) {
    Refuse(SentenceOf(error));
  }
  if (!typed.text && !texts.empty()) {
    typed.text = texts.front();
    texts.erase(texts.begin());
  }
  if (!texts.empty()) Refuse(ExtraArgument(texts.front(), remedy));
  if (const auto extras = app.remaining(); !extras.empty()) Refuse(UnknownWord(extras.front(), rows, remedy));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string name = LongName(rows[i]);
    if (!values[i].empty()) typed.Put(name, values[i]);
    if (flags[i] != 0) typed.Put(name, {flags[i] > 0 ? "1" : "0"});
    if (!flagWords[i].empty()) typed.Put(name, {flagWords[i] == "true" ? "1" : flagWords[i]});
    // A script whose variable is empty gets an error, not the defaults.
    if (std::find(values[i].begin(), values[i].end(), "") != values[i].end())
      Refuse(name + " has an empty value; give a value or leave the option out");
  }
  return typed;
}

ParsedArguments ParseArguments(std::vector<std::string> words, const Catalogue& catalogue) {
  ParsedArguments parsed;
  try {
    TypedWords typed = SortWords(std::move(words));
    if (typed.IsOn("--help")) {
      parsed.text = HelpText();
    } else if (typed.IsOn("--version")) {
      parsed.text = "glyphmotion " GLYPHMOTION_VERSION "\n";
    } else {
      parsed.arguments = ReadOptions(std::move(typed), catalogue);
    }
  } catch (const UsageError& error) {
    parsed.error = error.sentence;
    parsed.exitCode = 2;
  }
  return parsed;
}

}  // namespace glyphmotion
