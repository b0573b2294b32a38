// SPDX-License-Identifier: MIT
#include "host/options/arguments.h"

#include <algorithm>
#include <filesystem>

#include "host/options/argument_parts.h"
#include "host/options/looks.h"
#include "host/options/names.h"
#include "host/options/values.h"
#include "materials/colour_text.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/nearest_name.h"
#include "platform/number_text.h"
#include "platform/text_engine.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMostTextBytes = 65536;
// Of a text, as the library takes it.
constexpr long kMostCharacters = 4096;

void ReadEffect(Reading& reading) {
  if (!reading.typed.Has("--effect")) return;
  const std::string& typed = reading.typed.Value("--effect");
  std::vector<std::string> names;
  for (const std::string& name : reading.catalogue.effects) names.push_back(OptionForm(name));
  const std::string wanted = OptionForm(typed);
  if (std::find(names.begin(), names.end(), wanted) == names.end())
    Refuse("there is no effect '" + typed + "'" + Suggestion(wanted, names) + " (see --list effects)");
  reading.arguments.job.effect = wanted;
}

std::string TextOfFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) Refuse("the text file '" + path + "' cannot be found; check its name");
  if (error || !std::filesystem::is_regular_file(path, error))
    Refuse("'" + path + "' is not a file; a pipe is read by --text-file -");
  if (std::filesystem::file_size(path, error) > kMostTextBytes)
    Refuse("the text file '" + path + "' is too long for a text");
  const auto text = ReadWholeFile(path);
  if (!text) Refuse("the text file '" + path + "' cannot be read; check its permissions");
  return *text;
}

// True when the text comes from elsewhere, or is not rendered.
bool NeedsNoText(const Reading& reading) {
  const Job& job = reading.arguments.job;
  const auto& sets = reading.typed.Values("--set");
  std::error_code error;
  return reading.catalogue.textOptional || job.action == Job::Action::None || !job.documentFile.empty() ||
         std::filesystem::exists(job.settingsFile, error) ||
         std::any_of(sets.begin(), sets.end(), [](const auto& set) { return set.starts_with("MainText="); });
}

[[noreturn]] void RefuseForNoText(const Reading& reading) {
  Refuse(reading.catalogue.input
             ? "there is no text; write it in quotation marks, for example glyphmotion \"Hello\" -o hello.gif, use "
               "--text-file, or pipe it in"
             : "there is no text; add \"text\" or \"text-file\"");
}

// The text of the command line, where "-" means a pipe if there is one; of a file; or of a pipe.
void FindText(Reading& reading) {
  std::optional<std::string>& text = reading.typed.text;
  const auto input = [&](bool asked) {
    return reading.catalogue.input ? reading.catalogue.input(asked) : std::nullopt;
  };
  if (reading.typed.Has("--text-file")) {
    const std::string& path = reading.typed.Value("--text-file");
    if (text) Refuse("a text and --text-file cannot be used together; leave one out");
    text = path == "-" ? input(true).value_or("") : TextOfFile(path);
  } else if (text != "-" && (text || NeedsNoText(reading))) {
    return;
  } else {
    const std::optional<std::string> piped = input(false);
    if (!piped && text) return;  // a dash
    if (piped.value_or("").empty()) RefuseForNoText(reading);
    text = piped;
  }
  // The line's end belongs to the file.
  if (text->ends_with('\n')) text->pop_back();
  if (text->ends_with('\r')) text->pop_back();
}

// "wght=650,wdth=80"
}  // namespace

std::vector<std::pair<std::string, double>> AxesOfOption(const std::string& list) {
  std::vector<std::pair<std::string, double>> axes;
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    const std::string pair = list.substr(begin, end - begin);
    double value = 0;
    const std::string number = pair.size() > 5 && pair[4] == '=' ? pair.substr(5) : std::string();
    if (number.empty() || ReadNumber(number, value) != number.size())
      Refuse("--font-variation '" + pair +
             "' is not an axis; write AXIS=V with four letters and a number, as in wght=650");
    axes.emplace_back(pair.substr(0, 4), value);
    begin = end + 1;
  }
  return axes;
}

namespace {

// The place of the option's word in its row.
int Choice(const Reading& reading, const char* option) {
  const std::string_view words = FindOption(option)->words;
  const std::size_t at = words.find(reading.typed.Value(option));
  return static_cast<int>(std::count(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(at), ','));
}

void ReadTextSetting(Reading& reading) {
  Job& job = reading.arguments.job;
  const TypedWords& typed = reading.typed;
  job.fontFile = typed.Value("--font-file");
  if (typed.Has("--text-direction"))
    job.textDirection = static_cast<Job::TextDirection>(Choice(reading, "--text-direction"));
  if (typed.Has("--align")) job.align = static_cast<Job::Align>(1 + Choice(reading, "--align"));
  if (typed.Has("--line-space")) job.lineSpace = static_cast<int>(reading.Number("--line-space"));
  if (typed.Has("--emoji")) job.colourEmoji = Choice(reading, "--emoji") == 0;
  job.fontVariation = AxesOfOption(typed.Value("--font-variation"));
}

void ReadCanvas(Reading& reading) {
  Job& job = reading.arguments.job;
  const TypedWords& typed = reading.typed;
  if (typed.Has("--width")) job.width = static_cast<int>(reading.Number("--width"));
  if (typed.Has("--height")) job.height = static_cast<int>(reading.Number("--height"));
  if (typed.Has("--fit")) job.fit = static_cast<Job::Fit>(Choice(reading, "--fit"));
  if (typed.Has("--valign")) job.verticalAlign = static_cast<Job::VerticalAlign>(Choice(reading, "--valign"));
  if (typed.Has("--fit") && !job.width && !job.height)
    Refuse("--fit needs a picture of a fixed size; add --width or --height");
  if (typed.Has("--valign") && !job.height) Refuse("--valign needs a picture of a fixed height; add --height");
}

void ReadText(Reading& reading) {
  Job& job = reading.arguments.job;
  if (const auto& text = reading.typed.text) {
    const auto characters = std::count_if(text->begin(), text->end(), [](char c) { return (c & 0xC0) != 0x80; });
    if (text->empty() && (job.action == Job::Action::Build || job.action == Job::Action::Sample))
      Refuse("the text is empty; give at least one character");
    if (characters > kMostCharacters)
      Refuse("the text has " + std::to_string(characters) + " characters; at most " + std::to_string(kMostCharacters) +
             " are allowed");
    job.text = text;
  }
  ReadTextSetting(reading);
  ReadCanvas(reading);
  if (!reading.typed.Has("--font")) return;
  if (!job.fontFile.empty()) Refuse("--font and --font-file cannot be used together; leave one out");
  const std::string& font = reading.typed.Value("--font");
  if (reading.catalogue.hasFont && !reading.catalogue.hasFont(font))
    Refuse("there is no font '" + font + "'" + Suggestion(font, reading.catalogue.fonts()) + " (see --list fonts)");
  job.settings.emplace_back("MainFontName", font);
}

bool IsColour(const std::string& text) {
  Colour colour = 0;
  int alpha = 0;
  return ParseColourAndAlpha(text, colour, alpha);
}

// A material of any form; what follows its prefix is read by the run.
void CheckMaterial(const char* option, const std::string& value, bool mayBeNone) {
  static const char* const kPrefixes[] = {"gradient:", "fountain:", "texture:", "tile:", "mtrl:", "image:"};
  if (value.empty() || IsColour(value) || (mayBeNone && Lowered(value) == "none")) return;
  for (const char* prefix : kPrefixes)
    if (value.rfind(prefix, 0) == 0) return;
  Refuse(std::string(option) + " '" + value + "' is not a material; use #RRGGBB, the name of a colour, gradient:..., " +
         "fountain:..., texture:NAME, tile:NAME, mtrl:FILE or image:FILE" + (mayBeNone ? ", or none" : "") +
         ColourSuggestion(value, mayBeNone));
}

void ReadMaterials(Reading& reading) {
  Job& job = reading.arguments.job;
  CheckMaterial("--fill", job.fill = reading.typed.Value("--fill"), false);
  CheckMaterial("--shadow", job.shadow = reading.typed.Value("--shadow"), true);
  CheckMaterial("--background", job.background = reading.typed.Value("--background"), false);
  job.outline = reading.typed.Value("--outline");
  Colour colour = 0;
  if (!job.outline.empty() && Lowered(job.outline) != "none" && !ParseColour(job.outline, colour))
    Refuse("--outline '" + job.outline + "' is not an opaque colour; use #RRGGBB, a name such as red, or none" +
           ColourSuggestion(job.outline, true));
}

void ReadSets(Reading& reading) {
  for (const std::string& pair : reading.typed.Values("--set")) AddSetting(reading, pair);
}

void ReadList(Reading& reading) {
  const auto names = ListNames();
  const auto place = std::find(names.begin(), names.end(), reading.typed.Value("--list"));
  reading.arguments.list = static_cast<ListKind>(place - names.begin() + 1);
}

void ReadFiles(Reading& reading) {
  Job& job = reading.arguments.job;
  const std::string& document = job.documentFile;
  std::error_code error;
  if (!document.empty() && !std::filesystem::is_regular_file(document, error))
    Refuse("the document '" + document + "' " +
           (std::filesystem::exists(document, error) ? "is not a regular file; name a .GM4 file"
                                                     : "cannot be found; check its name"));
  const std::filesystem::path settings = job.settingsFile;
  if (settings.has_parent_path() && !std::filesystem::is_directory(settings.parent_path(), error))
    Refuse("the settings file '" + settings.string() +
           "' cannot be saved: its folder does not exist; create it or name another file");
}

void CheckValues(const TypedWords& typed) {
  for (const OptionRow& row : OptionRows()) {
    if (!row.form && !*row.words) continue;
    for (const std::string& value : typed.Values(LongName(row))) {
      if (row.form || value != "1") CheckValue(row, value);
    }
  }
}

void ReadInOrder(Reading& reading) {
  Arguments& arguments = reading.arguments;
  ReadLookOption(reading);
  CheckValues(reading.typed);
  arguments.json = reading.typed.IsOn("--json");
  if (reading.typed.Has("--list")) return ReadList(reading);
  arguments.job.documentFile = reading.typed.Value("--document");
  arguments.job.saveDocumentFile = reading.typed.Value("--save-document");
  arguments.job.settingsFile = reading.typed.Value("--settings");
  arguments.saveLookFile = reading.typed.Value("--save-look");
  arguments.quiet = reading.typed.IsOn("--quiet");
  arguments.progress = reading.typed.Flag("--progress");
  ReadFormat(reading);
  ReadLoop(reading);
  ReadHost(reading);
  ReadAction(reading);
  ReadEffect(reading);
  FindText(reading);
  ReadText(reading);
  ReadMaterials(reading);
  AddDefaults(reading);
  ReadPalette(reading);
  ReadLookSettings(reading);
  ReadControls(reading);
  ReadSets(reading);
  ReadFiles(reading);
  if (!arguments.saveLookFile.empty()) KeepLook(reading);
}

void Resolve(Reading& reading) {
  try {
    ReadInOrder(reading);
  } catch (const UsageError& error) {
    Refuse(WithOrigin(reading, error.sentence));
  }
}

}  // namespace

long Reading::Number(const std::string& option) const {
  const OptionRow& row = *FindOption(option);
  return NumberInRange(option, typed.Value(option), row.minimum, row.maximum);
}

void Reading::Set(const std::string& key, const std::string& value, const std::string& option) {
  arguments.job.settings.emplace_back(key, value);
  arguments.optionOfKey.emplace_back(key, option);
}

void AddSetting(Reading& reading, const std::string& pair) {
  const auto equals = pair.find('=');
  if (equals == std::string::npos || equals == 0)
    Refuse("--set '" + pair + "' is not a pair; write KEY=VALUE, for example --set MainFontSize=72");
  const std::string key = pair.substr(0, equals);
  if (key[0] == '@') {
    // the effect's own: the run knows which
  } else if (const auto id = WholeNumber(key)) {
    const bool known = std::any_of(reading.catalogue.controls.begin(), reading.catalogue.controls.end(),
                                   [&](const ControlInfo& control) { return control.id == *id; });
    if (!known) Refuse("there is no control " + key + "; see --list controls");
  } else {
    std::vector<std::string> keys;
    for (const KeyInfo& row : reading.catalogue.keys) keys.push_back(row.key);
    if (std::find(keys.begin(), keys.end(), key) == keys.end())
      Refuse("there is no key '" + key + "'" + Suggestion(key, keys) + " (see --list keys)");
  }
  reading.arguments.job.settings.emplace_back(key, pair.substr(equals + 1));
}

const std::vector<std::string>& PaletteOptionNames() {
  static const std::vector<std::string> names = {
      "bw",      "windows16",     "orthogonal32", "orthogonal64", "orthogonal128",
      "safe216", "orthogonal256", "gray-mix256",  "gray256"};
  return names;
}

std::optional<Job::Palette> PaletteOfOption(const std::string& word) {
  std::vector<std::string> names = {"best", "auto", "custom"};  // in the order of Job::Palette
  const auto& fixed = PaletteOptionNames();
  if (const auto number = WholeNumber(word)) {
    const auto index = static_cast<std::size_t>(*number);
    if (*number < 0 || index >= fixed.size()) return std::nullopt;
    return static_cast<Job::Palette>(index + static_cast<std::size_t>(Job::Palette::BlackAndWhite));
  }
  names.insert(names.end(), fixed.begin(), fixed.end());
  const auto place = std::find(names.begin(), names.end(), Lowered(word));
  return place == names.end() ? std::nullopt : std::optional(static_cast<Job::Palette>(1 + (place - names.begin())));
}

std::string InOptionTerms(std::string sentence, const Arguments& arguments) {
  for (const auto& [key, option] : arguments.optionOfKey) {
    const std::string quoted = "'" + key + "'";
    const std::size_t at = sentence.find(quoted);
    if (at != std::string::npos) sentence.replace(at, quoted.size(), option);
  }
  return sentence;
}

Catalogue LibraryCatalogue() {
  return {EffectNames(), PaletteNames(), Keys(), Controls(), HasFontFamily, FontNames, {}, ReadLook, false};
}

Arguments ReadOptions(TypedWords typed, const Catalogue& catalogue) {
  Reading reading{std::move(typed), {}, catalogue};
  Resolve(reading);
  return std::move(reading.arguments);
}

}  // namespace glyphmotion
