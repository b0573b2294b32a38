// SPDX-License-Identifier: MIT
#include "host/program/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <numeric>
#include <string_view>

#include "host/encoders/encoders.h"
#include "platform/ascii.h"

namespace glyphmotion {
namespace {

struct UsageError {
  std::string sentence;
};

[[noreturn]] void Refuse(const std::string& sentence) { throw UsageError{sentence}; }

std::optional<long> WholeNumber(const std::string& text) {
  long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

std::string Join(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// "; did you mean ...?" or nothing.
std::string Suggestion(const std::string& word, const std::vector<std::string>& names) {
  const std::string nearest = NearestName(word, names);
  return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

// An option that sets one control: a number, or a switch.
struct NumberOption {
  const char* name;
  const char* key;
  long minimum, maximum;
  const char* help;
};
constexpr NumberOption kNumberOptions[] = {
    {"-s,--size", "MainFontSize", 4, 144, "Height of a line of text in pixels"},
    {"--pad", "MainPadding", 0, 512, "Padding around the text in pixels"},
    {"--space", "MainFontSpace", 50, 150, "Character spacing in percent"},
    {"--delay", "MainDelay", 1, 250,
     "How long a frame is shown: in 1/100 s for .gif (default 4, at most 25), in ms for other formats (default 40)"},
    {"--pause", "MainPause", 1, 10000,
     "How long the animation rests, in effects that rest; same unit (default 100, or 1000)"},
    {"--frames", "@frames", 2, 32760, "Number of frames, for effects that have this option"},
    {"--seed", "@seed", 100, 32760,
     "Seed of the random numbers, for effects that use them; another seed gives another picture"},
    {"--direction", "@scroll", 0, 3, "Direction of movement: 0 up, 1 right, 2 left, 3 down; or 0 left, 1 right"},
    {"--softness", "@soft", 0, 40, "Blur of the shadow"},
};

// Of a text, as the library takes it.
constexpr long kMostCharacters = 4096;

// The dialog's own limit of a delay for palette formats, in 1/100 s.
constexpr long kMostHundredths = 25;

struct SwitchOption {
  const char* name;
  const char* key;
  const char* value;  // what the flag sets; "01" for a pair of flags, the second of which switches off
  const char* help;
  const char* group;
};
constexpr SwitchOption kSwitchOptions[] = {
    {"--bold,!--no-bold", "MainFontBold", "01", "Bold letters", "Text"},
    {"--italic,!--no-italic", "MainFontItalic", "01", "Italic letters", "Text"},
    {"--antialias,!--no-antialias", "MainAntialias", "01", "Smooth edges", "Text"},
    {"--still-text", "MainRolling", "0", "Keep the text still", "Animation"},
    {"--dither", "MainDither", "1", "Dither colours that the palette lacks", "Colour"},
    {"--true-color", "Truecolour", "1", "True colour instead of a palette (.png, .webp)", "Colour"},
    {"--supercompress", "MainSupercompress", "1", "Paint unchanged pixels with one reserved colour", "Colour"},
    {"--transparent", "MainTransparent", "1", "A transparent background, as one index of the palette", "Colour"},
    {"--mask-background", "MainMaskBackground", "1", "Reserve a palette entry for the background", "Colour"},
    {"--alpha", "MainAlphaTrans", "1", "A transparent background with soft edges (.png, .webp)", "Colour"},
    {"--alpha-background", "UseAlphaGreyBack", "1", "With --alpha: compose on neutral grey", "Colour"},
    {"--add-comment", "AddDescriptiveCommentBlock", "1", "Add a comment that names the program", "Output"},
};

// Everything as the user typed it.
struct Typed {
  std::optional<std::string> text, effect, font, palette;
  std::string fill, shadow, background, outline, frames, host, list;
  std::string direction, align, lineSpace, emoji, variation;
  std::vector<std::string> numbers = std::vector<std::string>(std::size(kNumberOptions));
  std::vector<std::int64_t> switches = std::vector<std::int64_t>(std::size(kSwitchOptions));
  std::vector<std::string> sets, refusals;
  std::string failAllocation, lossy;
  bool sample = false, testRun = false, version = false;
  Arguments arguments;
};

void DefineOptions(CLI::App& app, Typed& typed) {
  Job& job = typed.arguments.job;
  app.add_option("text", typed.text, "The text; a line break in it begins a new line")->option_text("TEXT");
  const auto option = [&app](const char* name, auto& place, const char* form, const char* help, const char* group) {
    return app.add_option(name, place, help)->option_text(form)->group(group);
  };
  option("-o,--output", typed.arguments.output, "FILE",
         "The file to write: .gif, .png (animated, or one picture), .webp", "Output");
  option("--frames-as", typed.frames, "png", "Write a folder of numbered pictures, which -o names", "Output");
  option("--lossy", typed.lossy, "QUALITY", "Lossy .webp of this quality, 0 to 100 (default: lossless)", "Output");
  option("-e,--effect", typed.effect, "NAME", "The effect: see --list effects", "Animation");
  option("-f,--font", typed.font, "FAMILY", "The font: see --list fonts", "Text");
  option("--font-file", job.fontFile, "FILE[#N]", "Letters from this font file (N: face of a collection)", "Text");
  option("--font-variation", typed.variation, "AXIS=V,...", "Axes of a variable font, as in wght=650,wdth=80", "Text");
  option("--align", typed.align, "WHERE", "Lines of a text: left, center, right or justify", "Text");
  option("--line-space", typed.lineSpace, "N", "Distance of the lines in percent, 10 to 500", "Text");
  option("--text-direction", typed.direction, "DIR", "auto (of each line's letters), ltr or rtl", "Text");
  option("--emoji", typed.emoji, "KIND", "color, or mono: their shape in the fill", "Text");
  const char* material = "#RRGGBB | gradient:... | fountain:... | texture:NAME | tile:FILE#N | mtrl:FILE | image:FILE";
  option("--fill", typed.fill, "M", "Fill of the letters", "Materials")
      ->description(std::string("Fill of the letters. M is ") + material);
  option("--shadow", typed.shadow, "M", "Fill of the shadow", "Materials");
  option("--background", typed.background, "M", "Fill of the background", "Materials");
  option("--outline", typed.outline, "COLOUR", "Colour of the outline, #RRGGBB", "Materials");
  for (std::size_t i = 0; i < std::size(kNumberOptions); ++i) {
    const NumberOption& row = kNumberOptions[i];
    const bool named = row.maximum - row.minimum < 4;  // the help says what each number means
    const std::string help =
        row.help + (named ? "" : ", " + std::to_string(row.minimum) + " to " + std::to_string(row.maximum));
    option(row.name, typed.numbers[i], "N", help.c_str(), i < 3 ? "Text" : "Animation");
  }
  for (std::size_t i = 0; i < std::size(kSwitchOptions); ++i) {
    const SwitchOption& row = kSwitchOptions[i];
    app.add_flag(row.name, typed.switches[i], row.help)->group(row.group);
  }
  option("--palette", typed.palette, "NAME",
         "custom (made for the picture; the default for .gif) or a fixed one: see --list palettes", "Colour");
  option("--set", typed.sets, "KEY=VALUE",
         "Set any control by key or id: see --list keys and --list controls; overrides other options", "Settings")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option("--document", job.documentFile, "FILE", "Load this .GM4 document first", "Settings");
  option("--save-document", job.saveDocumentFile, "FILE", "Save all options as a .GM4 document", "Settings");
  option("--settings", job.settingsFile, "FILE", "Load and save this settings file instead of the defaults",
         "Settings");
  app.add_flag("--sample", typed.sample, "Write the still sample picture instead of an animation")->group("Output");
  app.add_flag("--test-run", typed.testRun, "Press Test instead of Build")->group("For hosts and tests");
  option("--record", typed.arguments.recordFolder, "FOLDER", "Write every call to the host into this folder",
         "For hosts and tests");
  option("--host", typed.host, "KIND", "What the host's format supports: palette, truecolor or both",
         "For hosts and tests");
  option("--refuse", typed.refusals, "WHAT", "The host refuses the task, or image:N (from 1)", "For hosts and tests")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option("--fail-allocation", typed.failAllocation, "N", "The N-th block allocation fails", "For hosts and tests");
  option("--list", typed.list, "WHAT", "Print effects, fonts, palettes, keys, controls, textures, fountains or tiles",
         "Help");
  app.add_flag("-q,--quiet", typed.arguments.quiet, "Print errors only")->group("Help");
  app.add_flag("--progress,!--no-progress", typed.arguments.progress, "Show a progress bar")->group("Help");
  app.add_flag("--version", typed.version, "Print the version")->group("Help");
}

std::vector<std::string> OptionWords(const CLI::App& app) {
  std::vector<std::string> words;
  for (const CLI::Option* option : app.get_options())
    for (const std::string& name : option->get_lnames()) words.push_back("--" + name);
  return words;
}

std::string ExtraArgument(const std::string& word) {
  return "unexpected argument '" + word + "'; put a text of several words in quotation marks";
}

// CLI11's error as one sentence of ours.
std::string SentenceOf(const CLI::ParseError& error, const CLI::App& app, const std::vector<std::string>& remaining) {
  if (!remaining.empty()) {
    const std::string& word = remaining.front();
    if (word.size() > 1 && word[0] == '-') {
      const std::string near = Suggestion(word.substr(0, word.find('=')), OptionWords(app));
      return "there is no option '" + word + "'" + (near.empty() ? "; see --help" : near);
    }
    return ExtraArgument(word);
  }
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

std::string FirstName(const char* names) {
  const std::string all = names;
  const auto comma = all.find(',');
  return comma == std::string::npos || all[comma + 1] == '!' ? all.substr(0, comma) : all.substr(comma + 1);
}

long NumberInRange(const std::string& option, const std::string& value, long minimum, long maximum) {
  const auto number = WholeNumber(value);
  if (!number || *number < minimum || *number > maximum)
    Refuse(option + " " + value + " is not allowed: it takes a whole number from " + std::to_string(minimum) + " to " +
           std::to_string(maximum));
  return *number;
}

void ReadFormat(Typed& typed) {
  Arguments& arguments = typed.arguments;
  if (!typed.frames.empty() && typed.frames != "png")
    Refuse("--frames-as " + typed.frames + " is not supported; the only value is png");
  arguments.framesAsPng = !typed.frames.empty();
  if (arguments.framesAsPng && arguments.output.empty()) Refuse("--frames-as png needs a folder; add -o FOLDER");
  if (arguments.framesAsPng) {
    arguments.extension = kFolderExtension;
  } else if (!arguments.output.empty()) {
    arguments.extension = Lowered(std::filesystem::path(arguments.output).extension().string());
    if (!FindFormat(arguments.extension))
      Refuse("'" + arguments.output + "' has an unknown file type; use a name that ends in .gif, .png or .webp");
  }
  if (!typed.lossy.empty()) {
    arguments.lossyQuality = static_cast<double>(NumberInRange("--lossy", typed.lossy, 0, 100));
    if (arguments.extension != ".webp") Refuse("--lossy is for .webp only; leave it out or write -o NAME.webp");
  }
}

void ReadHost(Typed& typed) {
  Job& job = typed.arguments.job;
  const EncoderFormat* format = FindFormat(typed.arguments.extension);
  job.paletteFormat = !format || format->paletteFormat;
  job.trueColourFormat = !job.paletteFormat;
  if (!typed.host.empty()) {
    if (typed.host != "palette" && typed.host != "truecolor" && typed.host != "both")
      Refuse("--host " + typed.host + " is not allowed; use palette, truecolor or both");
    job.paletteFormat = typed.host != "truecolor";
    job.trueColourFormat = typed.host != "palette";
  }
  for (const std::string& refusal : typed.refusals) {
    if (refusal == "task") {
      job.refuseTask = true;
    } else if (refusal.rfind("image:", 0) == 0) {
      job.refuseImage = static_cast<int>(NumberInRange("--refuse image:", refusal.substr(6), 1, 1000000));
    } else {
      Refuse("--refuse " + refusal + " is not allowed; use task or image:N");
    }
  }
  if (!typed.failAllocation.empty())
    job.failAllocation =
        static_cast<std::uint64_t>(NumberInRange("--fail-allocation", typed.failAllocation, 1, 2000000000));
}

void ReadAction(Typed& typed) {
  Arguments& arguments = typed.arguments;
  Job& job = arguments.job;
  if (typed.sample && typed.testRun) Refuse("--sample and --test-run cannot be used together; leave one out");
  job.action = typed.sample ? Job::Action::Sample : typed.testRun ? Job::Action::Test : Job::Action::Build;
  const bool wantsPictures = !arguments.output.empty() || !arguments.recordFolder.empty() || typed.testRun;
  if (wantsPictures) return;
  if (job.saveDocumentFile.empty()) Refuse("there is no output file; add -o FILE, for example -o hello.gif");
  job.action = Job::Action::None;
}

void ReadEffect(Typed& typed, const Catalogue& catalogue) {
  if (!typed.effect) return;
  std::vector<std::string> names;
  for (const std::string& name : catalogue.effects) names.push_back(OptionForm(name));
  const std::string wanted = OptionForm(*typed.effect);
  if (std::find(names.begin(), names.end(), wanted) == names.end())
    Refuse("there is no effect '" + *typed.effect + "'" + Suggestion(wanted, names) + " (see --list effects)");
  typed.arguments.job.effect = wanted;
}

// The place of a word among those that an option takes.
int Choice(const char* option, const std::string& word, const std::vector<std::string>& allowed) {
  const auto found = std::find(allowed.begin(), allowed.end(), word);
  if (found == allowed.end()) Refuse(std::string(option) + " " + word + " is not known; it takes " + Join(allowed));
  return static_cast<int>(found - allowed.begin());
}

// "wght=650,wdth=80"
void ReadVariation(const std::string& list, Job& job) {
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    const std::string pair = list.substr(begin, end - begin);
    double value = 0;
    const char* last = pair.data() + pair.size();
    const bool named = pair.size() > 5 && pair[4] == '=';
    const auto [stop, error] = named ? std::from_chars(pair.data() + 5, last, value) : std::from_chars_result{};
    if (!named || error != std::errc{} || stop != last)
      Refuse("--font-variation '" + pair +
             "' is not an axis; write AXIS=V with four letters and a number, as in wght=650");
    job.fontVariation.emplace_back(pair.substr(0, 4), value);
    begin = end + 1;
  }
}

void ReadSetting(Typed& typed) {
  Job& job = typed.arguments.job;
  if (!typed.direction.empty())
    job.textDirection =
        static_cast<Job::TextDirection>(Choice("--text-direction", typed.direction, {"auto", "ltr", "rtl"}));
  if (!typed.align.empty())
    job.align = static_cast<Job::Align>(1 + Choice("--align", typed.align, {"left", "center", "right", "justify"}));
  if (!typed.lineSpace.empty())
    job.lineSpace = static_cast<int>(NumberInRange("--line-space", typed.lineSpace, 10, 500));
  if (!typed.emoji.empty()) job.colourEmoji = Choice("--emoji", typed.emoji, {"color", "mono"}) == 0;
  ReadVariation(typed.variation, job);
}

void ReadText(Typed& typed, const Catalogue& catalogue) {
  Job& job = typed.arguments.job;
  if (typed.text) {
    const auto characters =
        std::count_if(typed.text->begin(), typed.text->end(), [](char c) { return (c & 0xC0) != 0x80; });
    if (typed.text->empty() && (job.action == Job::Action::Build || job.action == Job::Action::Sample))
      Refuse("the text is empty; give at least one character");
    if (characters > kMostCharacters)
      Refuse("the text has " + std::to_string(characters) + " characters; at most " + std::to_string(kMostCharacters) +
             " are allowed");
    job.text = typed.text;
  }
  ReadSetting(typed);
  if (typed.font && !job.fontFile.empty()) Refuse("--font and --font-file exclude each other; leave one out");
  if (!typed.font) return;
  if (catalogue.hasFont && !catalogue.hasFont(*typed.font))
    Refuse("there is no font '" + *typed.font + "'" + Suggestion(*typed.font, catalogue.fonts()) +
           " (see --list fonts)");
  job.settings.emplace_back("MainFontName", *typed.font);
}

bool IsColour(const std::string& text) {
  return (text.size() == 7 || text.size() == 4) && text[0] == '#' &&
         std::all_of(text.begin() + 1, text.end(), [](char c) { return HexDigit(c) >= 0; });
}

void ReadMaterials(Typed& typed) {
  Job& job = typed.arguments.job;
  static const char* const kPrefixes[] = {"gradient:", "fountain:", "texture:", "tile:", "mtrl:", "image:"};
  const auto check = [](const char* option, const std::string& value) {
    if (value.empty() || IsColour(value)) return;
    for (const char* prefix : kPrefixes)
      if (value.rfind(prefix, 0) == 0) return;
    Refuse(std::string(option) + " '" + value +
           "' is not a material; use #RRGGBB (hexadecimal digits), gradient:..., fountain:..., texture:NAME, "
           "tile:FILE#N, mtrl:FILE or image:FILE");
  };
  check("--fill", job.fill = typed.fill);
  check("--shadow", job.shadow = typed.shadow);
  check("--background", job.background = typed.background);
  if (!typed.outline.empty() && !IsColour(typed.outline))
    Refuse("--outline '" + typed.outline + "' is not a colour; write #RRGGBB with hexadecimal digits");
  job.outline = typed.outline;
}

void ReadPalette(Typed& typed, const Catalogue& catalogue) {
  if (!typed.palette) return;
  Job& job = typed.arguments.job;
  const auto& names = PaletteOptionNames();
  const std::string name = Lowered(*typed.palette);
  if (name == "custom") {
    job.settings.emplace_back("14", "1");
    return;
  }
  auto index = static_cast<long>(std::find(names.begin(), names.end(), name) - names.begin());
  if (const auto number = WholeNumber(name)) index = *number;
  if (index < 0 || index >= static_cast<long>(std::min(names.size(), catalogue.palettes.size())))
    Refuse("there is no palette '" + *typed.palette + "'; use custom, " + Join(names) + ", or a number from 0 to " +
           std::to_string(names.size() - 1));
  job.settings.emplace_back("14", "0");
  job.settings.emplace_back("MainPalette", std::to_string(index));
}

// The program's defaults where the files say nothing, and the colours that the format supports. An explicit palette
// turns true colour off, even in a format that has it.
void AddDefaults(Typed& typed) {
  Job& job = typed.arguments.job;
  job.defaults = {{"AddDescriptiveCommentBlock", "0"},
                  {"MainDelay", job.paletteFormat ? "4" : "40"},
                  {"MainPause", job.paletteFormat ? "100" : "1000"},
                  {"14", "1"}};
  const EncoderFormat* format = FindFormat(typed.arguments.extension);
  const bool prefersPalette = typed.palette || (format ? format->paletteFormat : job.paletteFormat);
  if (job.trueColourFormat) job.settings.emplace_back("Truecolour", prefersPalette ? "0" : "1");
}

void CheckHonoured(const Job& job, const std::string& key) {
  if (key == "Truecolour" && !job.trueColourFormat)
    Refuse("--true-color needs a true-colour format; write .png or .webp");
  if ((key == "MainTransparent" || key == "MainSupercompress") && !job.paletteFormat)
    Refuse(std::string(key == "MainTransparent" ? "--transparent" : "--supercompress") +
           " needs a palette format; write .gif" + (key == "MainTransparent" ? ", or use --alpha" : ""));
  if ((key == "MainAlphaTrans" || key == "UseAlphaGreyBack") && job.paletteFormat)
    Refuse(std::string(key == "MainAlphaTrans" ? "--alpha" : "--alpha-background") +
           " needs a format with alpha; write .png or .webp, or use --transparent");
}

void ReadControls(Typed& typed) {
  Job& job = typed.arguments.job;
  for (std::size_t i = 0; i < std::size(kNumberOptions); ++i) {
    const NumberOption& row = kNumberOptions[i];
    if (typed.numbers[i].empty()) continue;
    const std::string option = FirstName(row.name);
    const bool hundredths = job.paletteFormat && std::string_view(row.key) == "MainDelay";
    const long number =
        NumberInRange(option, typed.numbers[i], row.minimum, hundredths ? kMostHundredths : row.maximum);
    job.settings.emplace_back(row.key, std::to_string(number));
    typed.arguments.optionOfKey.emplace_back(row.key, option);
  }
  for (std::size_t i = 0; i < std::size(kSwitchOptions); ++i) {
    const SwitchOption& row = kSwitchOptions[i];
    if (typed.switches[i] == 0) continue;
    const std::string value = std::string(row.value) == "01" ? (typed.switches[i] > 0 ? "1" : "0") : row.value;
    if (value == "1") CheckHonoured(job, row.key);
    job.settings.emplace_back(row.key, value);
    typed.arguments.optionOfKey.emplace_back(row.key, FirstName(row.name));
  }
}

bool IsOn(const Typed& typed, std::string_view name) {
  const auto* row = std::find_if(std::begin(kSwitchOptions), std::end(kSwitchOptions),
                                 [&](const SwitchOption& one) { return one.name == name; });
  return typed.switches[static_cast<std::size_t>(row - kSwitchOptions)] > 0;
}

void RefuseTransparentSample(const Typed& typed) {
  for (const char* option : {"--alpha", "--transparent"}) {
    if (typed.sample && IsOn(typed, option))
      Refuse(std::string("--sample has no transparency; leave ") + option + " out, or build the animation");
  }
}

// Options that are accepted, as the dialog's checks are, but change nothing together with others.
void NoteIdleOptions(Typed& typed) {
  const auto isOn = [&](std::string_view name) { return IsOn(typed, name); };
  const bool fixedPalette = typed.palette && Lowered(*typed.palette) != "custom";
  const struct {
    bool applies;
    const char *idle, *beside;
  } rows[] = {{isOn("--transparent") && fixedPalette, "--transparent", "a fixed --palette"},
              {isOn("--transparent") && isOn("--supercompress"), "--transparent", "--supercompress"},
              {isOn("--dither") && isOn("--true-color"), "--dither", "--true-color"},
              {isOn("--dither") && isOn("--alpha"), "--dither", "--alpha"},
              {typed.palette && isOn("--true-color"), "--palette", "--true-color"},
              {typed.palette && isOn("--alpha"), "--palette", "--alpha"}};
  for (const auto& row : rows) {
    if (row.applies)
      typed.arguments.notes.push_back(std::string(row.idle) + " changes nothing together with " + row.beside +
                                      "; leave one of them out");
  }
}

void ReadSets(Typed& typed, const Catalogue& catalogue) {
  for (const std::string& pair : typed.sets) {
    const auto equals = pair.find('=');
    if (equals == std::string::npos || equals == 0)
      Refuse("--set '" + pair + "' is not a pair; write KEY=VALUE, for example --set MainFontSize=72");
    const std::string key = pair.substr(0, equals);
    if (const auto id = WholeNumber(key)) {
      const bool known = std::any_of(catalogue.controls.begin(), catalogue.controls.end(),
                                     [&](const ControlInfo& control) { return control.id == *id; });
      if (!known) Refuse("there is no control " + key + "; see --list controls");
    } else {
      std::vector<std::string> keys;
      for (const KeyInfo& row : catalogue.keys) keys.push_back(row.key);
      if (std::find(keys.begin(), keys.end(), key) == keys.end())
        Refuse("there is no key '" + key + "'" + Suggestion(key, keys) + " (see --list keys)");
    }
    typed.arguments.job.settings.emplace_back(key, pair.substr(equals + 1));
  }
}

void ReadList(Typed& typed) {
  static const std::vector<std::string> kNames = {"effects",  "fonts",    "palettes",  "keys",
                                                  "controls", "textures", "fountains", "tiles"};
  const auto place = std::find(kNames.begin(), kNames.end(), typed.list);
  if (place == kNames.end()) Refuse("there is no list '" + typed.list + "'; use one of " + Join(kNames));
  typed.arguments.list = static_cast<ListKind>(place - kNames.begin() + 1);
}

void ReadFiles(const Typed& typed) {
  const std::string& document = typed.arguments.job.documentFile;
  std::error_code error;
  if (!document.empty() && !std::filesystem::is_regular_file(document, error))
    Refuse("the document '" + document + "' " +
           (std::filesystem::exists(document, error) ? "is not a regular file; name a .GM4 file"
                                                     : "cannot be found; check its name"));
  const std::filesystem::path settings = typed.arguments.job.settingsFile;
  if (settings.has_parent_path() && !std::filesystem::is_directory(settings.parent_path(), error))
    Refuse("the settings file '" + settings.string() +
           "' cannot be saved: its folder does not exist; create it or name another file");
}

// A script whose variable is empty should get an error, not the defaults.
void RefuseEmptyValues(const CLI::App& app) {
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_lnames().empty()) continue;
    for (const std::string& value : option->results())
      if (value.empty())
        Refuse("--" + option->get_lnames().front() + " has an empty value; give a value or leave the option out");
  }
}

Arguments Resolve(Typed& typed, const Catalogue& catalogue) {
  if (!typed.list.empty()) {
    ReadList(typed);
    return typed.arguments;
  }
  ReadFormat(typed);
  ReadHost(typed);
  ReadAction(typed);
  ReadEffect(typed, catalogue);
  ReadText(typed, catalogue);
  ReadMaterials(typed);
  AddDefaults(typed);
  ReadPalette(typed, catalogue);
  ReadControls(typed);
  RefuseTransparentSample(typed);
  NoteIdleOptions(typed);
  ReadSets(typed, catalogue);
  ReadFiles(typed);
  return typed.arguments;
}

constexpr const char* kExamples =
    "Examples:\n"
    "  glyphmotion \"Hello\" -o hello.gif\n"
    "  glyphmotion \"Hello\" -e vortex -o hello.gif\n"
    "  glyphmotion \"Grand opening\" -f \"Liberation Serif\" -s 72 --fill \"#cc2200\" -o sign.webp\n"
    "  glyphmotion \"Fog\" --alpha -o fog.png\n"
    "  glyphmotion swatch \"fountain:Sunrise\" -o sunrise.png        a material alone\n";

}  // namespace

const std::vector<std::string>& PaletteOptionNames() {
  static const std::vector<std::string> names = {
      "bw",      "windows16",     "orthogonal32", "orthogonal64", "orthogonal128",
      "safe216", "orthogonal256", "gray-mix256",  "gray256"};
  return names;
}

std::string OptionForm(const std::string& name) {
  std::string form = Lowered(name);
  std::replace(form.begin(), form.end(), ' ', '-');
  return form;
}

std::string InOptionTerms(std::string sentence, const Arguments& arguments) {
  for (const auto& [key, option] : arguments.optionOfKey) {
    const std::string quoted = "'" + key + "'";
    const std::size_t at = sentence.find(quoted);
    if (at != std::string::npos) sentence.replace(at, quoted.size(), option);
  }
  return sentence;
}

std::string NearestName(const std::string& word, const std::vector<std::string>& names) {
  const std::string wanted = Lowered(word);
  std::string nearest;
  std::size_t least = std::max<std::size_t>(2, wanted.size() / 3) + 1;
  for (const std::string& name : names) {
    const std::string other = Lowered(name);
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      std::size_t diagonal = row[0]++;
      for (std::size_t j = 0; j < other.size(); ++j) {
        const std::size_t change = diagonal + (wanted[i] != other[j]);
        diagonal = row[j + 1];
        row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
      }
    }
    if (row.back() < least) {
      least = row.back();
      nearest = name;
    }
  }
  return nearest;
}

ParsedArguments ParseArguments(std::vector<std::string> words, const Catalogue& catalogue) {
  ParsedArguments parsed;
  CLI::App app{"Turns a line of text into an animated picture.", "glyphmotion"};
  app.footer(kExamples);
  app.set_help_flag();
  app.allow_extras();
  Typed typed;
  DefineOptions(app, typed);
  app.set_help_flag("-h,--help", "Print this help")->group("Help");
  // What follows "--" is the text, whatever it looks like.
  const auto dashes = std::find(words.begin(), words.end(), "--");
  std::vector<std::string> texts(dashes == words.end() ? dashes : dashes + 1, words.end());
  words.erase(dashes, words.end());
  std::reverse(words.begin(), words.end());  // CLI11 takes them last first
  try {
    app.parse(words);
    const std::vector<std::string> extras = app.remaining();
    if (!typed.text && !texts.empty()) {
      typed.text = texts.front();
      texts.erase(texts.begin());
    }
    if (!texts.empty()) Refuse(ExtraArgument(texts.front()));
    if (!extras.empty()) Refuse(SentenceOf(CLI::ParseError("", 2), app, extras));
    if (typed.version) {
      parsed.text = "glyphmotion " GLYPHMOTION_VERSION "\n";
      return parsed;
    }
    RefuseEmptyValues(app);
    parsed.arguments = Resolve(typed, catalogue);
  } catch (const CLI::CallForHelp&) {
    parsed.text = app.help();
    // CLI11 marks the second of a pair of flags with its value; that is noise in a help text.
    for (std::size_t at; (at = parsed.text.find("{false}")) != std::string::npos;)
      parsed.text.replace(at, 7, "       ");
  } catch (const CLI::ParseError& error) {
    parsed.error = SentenceOf(error, app, {});
    parsed.exitCode = 2;
  } catch (const UsageError& error) {
    parsed.error = error.sentence;
    parsed.exitCode = 2;
  }
  return parsed;
}

}  // namespace glyphmotion
