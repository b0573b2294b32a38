// SPDX-License-Identifier: MIT
// What people and scripts write: words, lines of a batch, looks, KEY=VALUE.
#include <filesystem>

#include "fuzz/readers.h"
#include "host/options/arguments.h"
#include "host/options/library_options.h"
#include "host/options/looks.h"
#include "host/program/command_line.h"
#include "host/program/json_lines.h"

namespace glyphmotion::fuzz {
namespace {

// Without the machine's fonts and files: an input means the same everywhere.
const Catalogue& Names() {
  static const Catalogue catalogue = [] {
    Catalogue names = LibraryCatalogue();
    names.hasFont = [](const std::string& family) { return family == "DejaVu Sans"; };
    names.fonts = [] { return std::vector<std::string>{"DejaVu Sans"}; };
    names.input = [](bool) { return std::optional<std::string>("Text"); };
    names.readLook = [](const std::string& name) { return ReadLook(std::filesystem::path(name).stem().string()); };
    return names;
  }();
  return catalogue;
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return lines;
}

void Parse(const std::vector<std::string>& words, const Catalogue& names = Names()) {
  const ParsedArguments parsed = ParseArguments(words, names);
  Require(parsed.arguments ? parsed.error.empty() : parsed.exitCode == 0 || !parsed.error.empty());
}

}  // namespace

// A word a line.
void ReadArguments(std::string_view input) {
  const std::vector<std::string> words = LinesOf(input);
  Parse(words);
  TypedWords typed;
  try {
    for (std::size_t i = 0; i + 1 < words.size(); i += 2) SetLibraryOption(typed, words[i], words[i + 1]);
    ReadOptions(std::move(typed), Names());
  } catch (const UsageError& error) {
    Require(!InLibraryTerms(error.sentence).empty());
  }
}

// A line's outputs are within the folder that was given, whatever it says.
void ReadBatchLines(std::string_view input) {
  try {
    const JobLine job = ReadJobLine(std::string(input), "/out");
    for (const std::string& file : job.writes)
      Require(std::filesystem::path(file).lexically_normal().string().starts_with("/out/"));
    Parse(job.words);
  } catch (const UsageError& error) {
    Require(!error.sentence.empty());
  }
}

// A look that was read and written reads as the same.
void ReadLooks(std::string_view input) {
  static const Catalogue names = [] {
    Catalogue files = Names();
    files.readLook = ReadLook;
    return files;
  }();
  Parse({"Hi", "-o", "a.gif", "--look", FileOf(input, ".toml")}, names);
  try {
    const Look look = ReadLook(FileOf(input, ".toml"));
    const Look again = ReadLook(FileOf(LookText(look.entries), ".toml"));
    Require(look.entries.size() == again.entries.size());
  } catch (const UsageError& error) {
    Require(!error.sentence.empty());
  }
}

// The first line is the effect's number and the text's first characters, each other one KEY=VALUE.
void ReadSetValues(std::string_view input) {
  static const std::vector<std::string> effects = EffectNames();
  Job job;
  job.effect = effects[Numbers(input).Byte() % effects.size()];
  for (const std::string& line : LinesOf(input)) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) job.settings.emplace_back(line.substr(0, equals), line.substr(equals + 1));
  }
  job.action = Job::Action::None;
  const RenderResult result = Render(job, {});
  Require(result.blocks == 0 && result.locks == 0);
  Require((result.status == RenderStatus::Done) == result.message.empty());
}

}  // namespace glyphmotion::fuzz
