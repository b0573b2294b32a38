// SPDX-License-Identifier: MIT
// What people and scripts write: words, lines of a batch, looks, KEY=VALUE.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <utility>

#include "fuzz/open_dialog.h"
#include "fuzz/readers.h"
#include "host/options/arguments.h"
#include "host/options/library_options.h"
#include "host/options/looks.h"
#include "host/program/command_line.h"
#include "host/program/json_lines.h"
#include "host/render/render_user.h"
#include "shell/settings.h"

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

// A word a line; {FILE} is one that exists. {CATALOGUE 0} is a program without a pipe, {CATALOGUE 1} a library without
// looks whose text may come later.
void ReadArguments(std::string_view input) {
  std::vector<std::string> words = LinesOf(input);
  Catalogue names = Names();
  if (!words.empty() && words[0].starts_with("{CATALOGUE ")) {
    names.input = {};
    if (words[0].ends_with("1}")) names.readLook = {}, names.hasFont = {}, names.textOptional = true;
    words.erase(words.begin());
  }
  std::replace(words.begin(), words.end(), std::string("{FILE}"), FileOf("Text\r\n", ".txt"));
  Parse(words, names);
  TypedWords typed;
  try {
    for (std::size_t i = 0; i + 1 < words.size(); i += 2)
      SetLibraryOption(typed, words[i], words[i + 1] == "-" ? std::nullopt : std::optional(words[i + 1]));
    ReadOptions(std::move(typed), names);
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
    files.hasFont = [](const std::string& family) { return family != "x"; };
    return files;
  }();
  const std::string& file = FileOf(input, ".toml");
  Parse({"Hi", "-o", "a.gif", "--look", file}, names);
  Parse({"Hi", "-o", "a.gif", "--look", file, "--effect", "iris", "--fps", "20"}, names);
  Parse({"Hi", "-o", "a.gif", "--look", std::string(input.substr(0, 40))}, names);
  try {
    const Look look = ReadLook(FileOf(input, ".toml"));
    const Look again = ReadLook(FileOf(LookText(look.entries), ".toml"));
    Require(look.entries.size() == again.entries.size());
  } catch (const UsageError& error) {
    Require(!error.sentence.empty());
  }
}

// The first byte is the effect's number (from 250: one that does not exist), the second the host's formats and, in 4, a
// whole run with all lines; then lines of KEY=VALUE, or --OPTION=VALUE, where a bar is a line's end. What follows a
// line that begins with "[" is a document.
void ReadSetValues(std::string_view input) {
  static const std::vector<std::string> effects = EffectNames();
  static OpenDialog& open = *new OpenDialog;
  Numbers numbers(input);
  const std::uint8_t effect = numbers.Byte(), kind = numbers.Byte();
  TypedWords typed;
  typed.Put("--output", {"a.gif"});
  Job job;
  const std::string_view rest = numbers.Rest();
  const std::size_t end = rest.find("\n["), document = rest.find('\n', std::min(end, rest.size()) + 1);
  for (std::string& line : LinesOf(rest.substr(0, end))) {
    std::replace(line.begin(), line.end(), '|', '\n');
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    if (!line.starts_with("--")) {
      job.settings.emplace_back(line.substr(0, equals), line.substr(equals + 1));
      continue;
    }
    try {
      SetLibraryOption(typed, line.substr(2, equals - 2), line.substr(equals + 1));
    } catch (const UsageError&) {
    }
  }
  try {
    Job ofOptions = ReadOptions(std::move(typed), Names()).job;
    ofOptions.settings.insert(ofOptions.settings.end(), job.settings.begin(), job.settings.end());
    job = std::move(ofOptions);
  } catch (const UsageError&) {
  }
  if (!job.effect || effect >= 250) job.effect = effect >= 250 ? "none" : effects[effect % effects.size()];
  if (kind & 128) {
    job.size = effect;
    job.delay = std::chrono::milliseconds(effect * 8);
    job.palette = static_cast<Job::Palette>(effect % 12);
  }
  job.settingsFile.clear();  // an input names no file that is written
  job.saveDocumentFile = !(kind & 16) ? std::string() : kind & 128 ? "/none/a.gm4" : FileOf({}, ".saved.gm4");
  job.documentFile = document < rest.size() ? FileOf(rest.substr(document + 1), ".gm4") : std::string();
  job.paletteFormat = !(kind & 1);
  job.trueColourFormat = kind & 2;
  if (kind & 32) job.defaults = {{"MainDelay", "4"}, {"MainPause", "100"}, {"MainFontSize", "9"}, {"14", "1"}};
  job.action = Job::Action::None;
  if (kind & 4) {
    constexpr Job::Action actions[] = {Job::Action::None, Job::Action::Sample, Job::Action::Build, Job::Action::Test};
    job.action = actions[(kind >> 3 & 1) | (kind >> 5 & 2)];
    std::atomic<bool> stop = false;  // any build may be long
    Sink sink;
    sink.stop = &stop;
    sink.stage = [&](const std::string&) { stop = true; };
    const RenderResult result = Render(job, sink);
    Require(result.blocks == 0 && result.locks == 0);
    Require((result.status == RenderStatus::Done) == result.message.empty());
    return;
  }
  // Line by line: one that is refused does not hide those after it.
  open.Do([&](Dialog& dialog) {
    open.Restore(dialog);
    const std::vector<Job::Setting> settings = std::exchange(job.settings, {});
    const auto play = [&] {
      const std::vector<std::string> messages;
      ScriptedUser user(job, messages,
                        SummariseSettings(kind & 64 ? "[PlugIn]\nMainDelay = 3000\nMainFontName = x\n" : ""));
      user.Play(dialog, {});
      Require(user.Played() == user.Error().empty());
    };
    play();
    for (const Job::Setting& setting : settings) {
      Job line;
      line.paletteFormat = job.paletteFormat;
      line.trueColourFormat = job.trueColourFormat;
      line.action = Job::Action::None;
      line.settings = {setting};
      job = std::move(line);
      play();
    }
  });
}

}  // namespace glyphmotion::fuzz
