// SPDX-License-Identifier: MIT
// A look beneath the fields of a Job: each of its options fills the field of the same meaning if that is open.
#include <algorithm>
#include <variant>

#include "host/options/argument_parts.h"
#include "host/options/library_options.h"
#include "host/options/looks.h"
#include "host/options/names.h"
#include "host/options/values.h"

namespace glyphmotion {
namespace {

using Member = std::variant<std::optional<int> Job::*, std::optional<bool> Job::*, std::optional<std::string> Job::*,
                            std::string Job::*, int Job::*>;

constexpr std::pair<const char*, Member> kFields[] = {{"--width", &Job::width},
                                                      {"--height", &Job::height},
                                                      {"--loop", &Job::loops},
                                                      {"--font", &Job::font},
                                                      {"--line-space", &Job::lineSpace},
                                                      {"--size", &Job::size},
                                                      {"--pad", &Job::pad},
                                                      {"--space", &Job::space},
                                                      {"--bold", &Job::bold},
                                                      {"--italic", &Job::italic},
                                                      {"--antialias", &Job::antialias},
                                                      {"--frames", &Job::frames},
                                                      {"--seed", &Job::seed},
                                                      {"--direction", &Job::direction},
                                                      {"--softness", &Job::softness},
                                                      {"--still-text", &Job::stillText},
                                                      {"--fill", &Job::fill},
                                                      {"--shadow", &Job::shadow},
                                                      {"--background", &Job::background},
                                                      {"--outline", &Job::outline},
                                                      {"--colors", &Job::colours},
                                                      {"--true-color", &Job::trueColour},
                                                      {"--supercompress", &Job::supercompress},
                                                      {"--transparent", &Job::transparent},
                                                      {"--mask-background", &Job::maskBackground},
                                                      {"--alpha", &Job::alpha},
                                                      {"--alpha-background", &Job::alphaBackground}};

// The value of a field that may be open.
struct Filler {
  Job& job;
  const std::string& word;
  void operator()(std::optional<int> Job::*field) const {
    if (!(job.*field)) job.*field = static_cast<int>(WholeNumber(word).value_or(0));
  }
  void operator()(std::optional<bool> Job::*field) const {
    if (!(job.*field)) job.*field = word == "1";
  }
  void operator()(std::optional<std::string> Job::*field) const {
    if (!(job.*field)) job.*field = word;
  }
  void operator()(std::string Job::*field) const {
    if ((job.*field).empty()) job.*field = word;
  }
  void operator()(int Job::*field) const {
    if (job.*field == Job{}.*field) job.*field = static_cast<int>(WholeNumber(word).value_or(0));
  }
};

// A field of words, in the order of the option's; `first` is what the first of them means.
template <typename Field>
void FillChoice(Field& field, const char* option, const std::string& word, int first = 0) {
  const std::vector<std::string> words = WordsOf(*FindOption(option));
  const auto place = std::find(words.begin(), words.end(), word);
  if (field == Field{}) field = static_cast<Field>(first + static_cast<int>(place - words.begin()));
}

// A bare number counts hundredths of a second.
void FillTime(std::optional<std::chrono::milliseconds>& field, const std::string& option, const std::string& word) {
  if (field) return;
  const long number = WholeNumber(word) ? 10 * *WholeNumber(word) : TimeInRange(option, word, 1, 1, 100000).units;
  field = std::chrono::milliseconds(number);
}

void FillSpecial(Job& job, const std::string& option, const std::string& word) {
  if (option == "--effect" && !job.effect) job.effect = OptionForm(word);
  if (option == "--fit") FillChoice(job.fit, "--fit", word);
  if (option == "--align") FillChoice(job.align, "--align", word, 1);
  if (option == "--valign" && job.verticalAlign == Job::VerticalAlign::Middle)
    job.verticalAlign = word == "top"      ? Job::VerticalAlign::Top
                        : word == "bottom" ? Job::VerticalAlign::Bottom
                                           : Job::VerticalAlign::Middle;
  if (option == "--text-direction") FillChoice(job.textDirection, "--text-direction", word);
  if (option == "--emoji") job.colourEmoji = job.colourEmoji && word == "color";
  if (option == "--start" && !job.start)
    job.start = word == "rest" ? Job::kRest : static_cast<int>(WholeNumber(word).value_or(1)) - 1;
  if (option == "--font-variation" && job.fontVariation.empty()) job.fontVariation = AxesOfOption(word);
  if (option == "--delay") FillTime(job.delay, option, word);
  if (option == "--pause") FillTime(job.pause, option, word);
  if (option == "--fps" && !job.delay)
    job.delay = std::chrono::milliseconds((2000 / WholeNumber(word).value_or(25) + 1) / 2);
  if (option == "--palette" && job.palette == Job::Palette::Dialog)
    job.palette = PaletteOfOption(word).value_or(Job::Palette::Dialog);
  if (option == "--dither" && !job.dither) {
    job.dither = word != "0";
    if (word.size() > 1) job.dithering = word == "stable" ? Job::Dithering::Stable : Job::Dithering::Ordered;
  }
}

void Fill(Job& job, const std::string& option, const std::string& word) {
  const auto* row =
      std::find_if(std::begin(kFields), std::end(kFields), [&](const auto& field) { return option == field.first; });
  if (row != std::end(kFields)) return std::visit(Filler{job, word}, row->second);
  FillSpecial(job, option, word);
}

// What is decided before the look is read.
TypedWords WordsOf(const Job& job) {
  TypedWords typed;
  if (job.effect) typed.Put("--effect", {*job.effect});
  if (job.height) typed.Put("--height", {std::to_string(job.height)});
  if (!job.fontFile.empty()) typed.Put("--font-file", {job.fontFile});
  return typed;
}

// A setting of a look gives way to the field of the same meaning, as it gives way to that option of the program.
bool FillSetting(Job& job, const std::string& pair) {
  const std::string key = pair.substr(0, pair.find('='));
  for (const OptionRow& row : OptionRows()) {
    if (!row.key || row.key != key || (row.value && std::string_view(row.value) == "0")) continue;
    Fill(job, LongName(row), pair.substr(key.size() + 1));
    return true;
  }
  return false;
}

}  // namespace

std::string ApplyLook(Job& job, const std::string& nameOrFile) try {
  const Catalogue catalogue = LibraryCatalogue();
  Reading reading{WordsOf(job), {}, catalogue};
  reading.typed.Put("--look", {nameOrFile});
  ReadLookOption(reading);
  Job filled = job;
  std::vector<Job::Setting> settings;
  for (const Look::Entry& entry : reading.look) {
    const std::string& value = entry.values.front();
    if (entry.option != "--set") {
      Fill(filled, entry.option, value);
    } else if (!FillSetting(filled, value)) {
      settings.emplace_back(value.substr(0, value.find('=')), value.substr(value.find('=') + 1));
    }
  }
  filled.settings.insert(filled.settings.begin(), settings.begin(), settings.end());
  job = std::move(filled);
  return {};
} catch (const UsageError& error) {
  return InLibraryTerms(error.sentence);
}

}  // namespace glyphmotion
