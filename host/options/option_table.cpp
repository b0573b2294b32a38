// SPDX-License-Identifier: MIT
#include "host/options/option_table.h"

#include <algorithm>
#include <string_view>

namespace glyphmotion {
namespace {

constexpr const char *kText = "Text", *kAnimation = "Animation", *kMaterials = "Materials", *kColour = "Colour",
                     *kOutput = "Output", *kSettings = "Settings", *kHelp = kHelpGroup;
constexpr const char* kGroups[] = {kOutput, kText, kAnimation, kMaterials, kColour, kSettings, kHelp, kHostGroup};

constexpr const char* kLists[] = {"effects",  "fonts",     "palettes", "keys", "controls",
                                  "textures", "fountains", "tiles",    "looks"};

constexpr OptionRow Number(const char* names, const char* group, const char* key, long minimum, long maximum,
                           const char* help) {
  return {names, "N", group, help, key, minimum, maximum};
}
constexpr OptionRow Flag(const char* names, const char* group, const char* key, const char* value, const char* help) {
  return {names, nullptr, group, help, key, 0, 0, value};
}
constexpr OptionRow Word(const char* names, const char* group, const char* form, const char* words, const char* help) {
  return {names, form, group, help, nullptr, 0, 0, nullptr, words};
}
constexpr OptionRow Value(const char* names, const char* group, const char* form, const char* help,
                          bool repeats = false) {
  return {names, form, group, help, nullptr, 0, 0, nullptr, "", repeats};
}

constexpr OptionRow kRows[] = {
    Value("-o,--output", kOutput, "FILE",
          "The file to write: .gif, .png (animated, or one picture), .apng, .webp, .avif, .webm, .y4m; - for standard "
          "output"),
    Word("--format", kOutput, "FORMAT", "gif,png,apng,webp,avif,webm,y4m,rgba",
         "gif, png, apng, webp, avif, webm, y4m or rgba, whatever the name of the output; -o - needs it"),
    Word("--frames-as", kOutput, "png", "png", "Write a folder of numbered pictures, which -o names"),
    {"--lossy", "N", kOutput,
     "Quality of a lossy .webp or .avif (default: lossless) or of .webm, at most 100; of a .gif its loss, often a "
     "third smaller from 20 on",
     nullptr, 0, 200},
    Number("--max-bytes", kOutput, nullptr, 1, 2000000000,
           "Largest size of a .gif in bytes; lowers --lossy quality, then --colors, then the frame rate as needed"),
    {"--effort", "N", kOutput, "Time to spend on a smaller file (default: 6)", nullptr, 0, 9},
    {"--loop", "N", kOutput, "How many times the animation plays; 0 (default): forever", nullptr, 0, 65535},
    {"--start", "N|rest", kOutput, "Begin the loop with this frame, from 1, or with the longest one", nullptr, 1, 32760,
     nullptr, "rest"},
    {"--threads", "N", kOutput, "Number of threads; 0 (default): one per core", nullptr, 0, 256},
    Number("--width", kOutput, nullptr, 1, 16383, "Width of the picture in pixels (default: that of the text)"),
    Number("--height", kOutput, nullptr, 1, 16383, "Height of the picture in pixels (default: that of the text)"),
    Word("--fit", kOutput, "HOW", "shrink,none",
         "For a text too large for --width and --height: shrink (default) sets it smaller, none cuts off its edges"),
    Flag("--sample", kOutput, nullptr, nullptr, "Write the still sample picture instead of an animation"),
    Flag("--add-comment", kOutput, "AddDescriptiveCommentBlock", "1", "Add a comment that names the program"),

    Value("--text-file", kText, "FILE", "Read the text from this file; - for standard input"),
    Value("-f,--font", kText, "FAMILY", "The font: see --list fonts"),
    Value("--font-file", kText, "FILE[#N]", "Use this font file (N: a face of a collection)"),
    Value("--font-variation", kText, "AXIS=V,...", "Axes of a variable font, for example wght=650,wdth=80"),
    Word("--align", kText, "WHERE", "left,center,right,justify",
         "Alignment of lines, and of the text in a wider picture: left, center, right or justify"),
    Word("--valign", kText, "WHERE", "top,middle,bottom",
         "Position of the text in a taller picture: top, middle or bottom"),
    Number("--line-space", kText, nullptr, 10, 500, "Line spacing in percent"),
    Word("--text-direction", kText, "DIR", "auto,ltr,rtl", "auto (from each line's letters), ltr or rtl"),
    Word("--emoji", kText, "KIND", "color,mono", "color, or mono (their shapes, filled like letters)"),
    Number("-s,--size", kText, "MainFontSize", 4, 144, "Height of a line of text in pixels"),
    Number("--pad", kText, "MainPadding", 0, 512, "Padding around the text in pixels"),
    Number("--space", kText, "MainFontSpace", 50, 150, "Character spacing in percent"),
    Flag("--bold,!--no-bold", kText, "MainFontBold", "01", "Bold letters"),
    Flag("--italic,!--no-italic", kText, "MainFontItalic", "01", "Italic letters"),
    Flag("--antialias,!--no-antialias", kText, "MainAntialias", "01", "Smooth edges"),

    Value("-e,--effect", kAnimation, "NAME", "The effect: see --list effects"),
    Value(
        "--delay", kAnimation, "TIME",
        "How long a frame is shown: 80ms, 8cs, 0.1s; a bare number counts 1/100 s for .gif (1 to 25, default 4) and ms "
        "for the others (1 to 250, default 40)"),
    Number("--fps", kAnimation, nullptr, 1, 1000, "Frames per second, instead of --delay"),
    Value("--pause", kAnimation, "TIME",
          "How long the animation rests, in effects that rest; same units: 1 to 10000 (default 100, or 1000)"),
    Number("--frames", kAnimation, "@frames", 2, 32760, "Number of frames, in effects that have this option"),
    Number("--seed", kAnimation, "@seed", 100, 32760,
           "Seed of the random numbers, in effects that use them; another seed gives another picture"),
    {"--direction", "WHERE", kAnimation, "Direction of movement: left, right, up or down, or its number", "@scroll", 0,
     3, nullptr, "left,right,up,down,horizontal,vertical"},
    Number("--softness", kAnimation, "@soft", 0, 40, "Blur of the shadow"),
    Flag("--still-text", kAnimation, "MainRolling", "0", "Keep the text still"),

    Value("--fill", kMaterials, "M", "Fill of the letters: a colour or another material, see help materials"),
    Value("--shadow", kMaterials, "M", "Fill of the shadow, or none"),
    Value("--background", kMaterials, "M", "Fill of the background"),
    Value("--outline", kMaterials, "COLOUR", "Colour of the outline, #RRGGBB or a name, or none"),

    Value("--palette", kColour, "NAME",
          "custom (made for the picture; the default for .gif), best (the highest quality, in larger files), "
          "auto (best where custom is below 45 dB) or a fixed one: see --list palettes"),
    Number("--colors", kColour, nullptr, 2, 256, "Maximum number of colours in a custom or best palette"),
    {"--dither", nullptr, kColour,
     "Dither colours that the palette lacks; stable: dots stay where nothing moves, ordered: in a regular pattern",
     "MainDither", 0, 0, "1", "stable,ordered"},
    Flag("--true-color", kColour, "Truecolour", "1", "True colour instead of a palette (.png, .webp)"),
    Flag("--supercompress", kColour, "MainSupercompress", "1", "Paint unchanged pixels with one reserved colour"),
    Flag("--transparent", kColour, "MainTransparent", "1", "A transparent background, as one index of the palette"),
    Flag("--mask-background", kColour, "MainMaskBackground", "1", "Reserve a palette entry for the background"),
    Flag("--alpha", kColour, "MainAlphaTrans", "1", "A transparent background with soft edges (.png, .webp)"),
    Flag("--alpha-background", kColour, "UseAlphaGreyBack", "1", "With --alpha: compose on neutral grey"),

    Value(
        "--set", kSettings, "KEY=VALUE",
        "Set any control by key, id or @name (of the chosen effect): see --list keys, --list controls and help EFFECT; "
        "overrides other options",
        true),
    Value("--look", kSettings, "NAME|FILE", "Begin with the options of this look: see --list looks"),
    Value("--save-look", kSettings, "FILE", "Save the options as a look"),
    Value("--document", kSettings, "FILE", "Load this .GM4 document first"),
    Value("--save-document", kSettings, "FILE", "Save all options as a .GM4 document"),
    Value("--settings", kSettings, "FILE", "Load and save this settings file instead of the defaults"),

    Word("--list", kHelp, "WHAT", "effects,fonts,palettes,keys,controls,textures,fountains,tiles,looks",
         "Print effects, fonts, palettes, keys, controls, textures, fountains, tiles or looks"),
    Flag("--json", kHelp, nullptr, nullptr, "Print the result, or the --list, as JSON"),
    Flag("-q,--quiet", kHelp, nullptr, nullptr, "Print errors only"),
    Flag("--progress,!--no-progress", kHelp, nullptr, nullptr, "Show a progress bar"),
    Flag("--version", kHelp, nullptr, nullptr, "Print the version"),
    Flag("-h,--help", kHelp, nullptr, nullptr, "Print this help"),

    Flag("--test-run", kHostGroup, nullptr, nullptr, "Press Test instead of Build"),
    Value("--record", kHostGroup, "FOLDER", "Write every call to the host into this folder"),
    Word("--host", kHostGroup, "KIND", "palette,truecolor,both",
         "What the host's format supports: palette, truecolor or both"),
    Value("--refuse", kHostGroup, "WHAT", "The host refuses the task, or image:N (from 1)", true),
    {"--fail-allocation", "N", kHostGroup, "The N-th block allocation fails", nullptr, 1, 2000000000},
};

constexpr OptionRow kBatchRows[] = {
    Value("--out", kBatchGroup, "FOLDER", "Put all outputs into this folder, created if missing"),
    {"-j,--jobs", "N", kBatchGroup, "Number of jobs to run at once (default: one per core)", nullptr, 1, 1024},
    Value("--shard", kBatchGroup, "I/N", "Run only part I of N: every N-th line, starting at line I"),
    Flag("--resume", kBatchGroup, nullptr, nullptr, "Skip lines whose output is already made"),
    Flag("--json", kBatchGroup, nullptr, nullptr, "Print each result as one line of JSON"),
    Flag("-q,--quiet", kBatchGroup, nullptr, nullptr, "Print errors only"),
    Flag("--progress,!--no-progress", kBatchGroup, nullptr, nullptr, "Show the time left"),
    Flag("-h,--help", kBatchGroup, nullptr, nullptr, "Print this help"),
};

constexpr CommandRow kCommands[] = {
    {"batch", "JOBS.jsonl", "Run many jobs at once: see help batch", "", true},
    {"completion", "SHELL", "Print the completions of a shell", "bash,zsh,fish"},
    {"edit", "[FILE.GM4] [--port N] [--no-open]", "Open the page in the browser", "--port,--no-open", true},
    {"gallery", "FOLDER", "Make a page that shows every effect", "", true},
    {"help", "[TOPIC]", "Explain an effect, materials, batch or hosts", "materials,batch,hosts"},
    {"man", "", "Print the manual page"},
    {"swatch", "MATERIAL -o FILE.png", "Make a picture of a fill by itself", "-o", true},
};

}  // namespace

std::span<const CommandRow> CommandRows() { return kCommands; }
std::span<const OptionRow> BatchRows() { return kBatchRows; }
std::span<const char* const> OptionGroups() { return kGroups; }
std::span<const OptionRow> OptionRows() { return kRows; }
std::span<const char* const> ListNames() { return kLists; }

std::string LongName(const OptionRow& row) {
  const std::string_view names = row.names;
  const std::size_t begin = names.find("--");
  return std::string(names.substr(begin, names.find(',', begin) - begin));
}

std::string NegativeName(const OptionRow& row) {
  const std::string_view names = row.names;
  const std::size_t mark = names.find('!');
  return mark == std::string_view::npos ? std::string() : std::string(names.substr(mark + 1));
}

char ShortName(const OptionRow& row) { return row.names[1] == '-' ? '\0' : row.names[1]; }

std::vector<std::string> WordsOf(const OptionRow& row) {
  std::vector<std::string> words;
  std::string_view rest = row.words;
  while (!rest.empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    words.emplace_back(rest.substr(0, comma));
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return words;
}

const OptionRow* FindOption(const std::string& name) {
  const std::string wanted = name.starts_with("--") ? name : "--" + name;
  for (const OptionRow& row : kRows) {
    if (LongName(row) == wanted || NegativeName(row) == wanted) return &row;
  }
  return nullptr;
}

}  // namespace glyphmotion
