// SPDX-License-Identifier: MIT
// The options of the program and of the C API, and the job that they describe.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "host/options/look.h"
#include "host/options/typed_words.h"

namespace glyphmotion {

/// The names that the command line accepts; filled from the library by LibraryCatalogue, by hand in tests.
struct Catalogue {
  std::vector<std::string> effects;   ///< in the order of the effect list
  std::vector<std::string> palettes;  ///< in the order of their numbers, as the dialog shows them
  std::vector<KeyInfo> keys;
  std::vector<ControlInfo> controls;
  std::function<bool(const std::string&)> hasFont;
  std::function<std::vector<std::string>()> fonts;
  /// Reads standard input; nothing if it is neither a file nor a pipe, unless `asked` for by name.
  std::function<std::optional<std::string>(bool asked)> input;
  /// The look of a name or a file; throws UsageError. Empty: there are no looks.
  std::function<Look(const std::string&)> readLook = {};
  bool textOptional = false;  ///< for callers that have a text already; standard input is not read
};

/// The library's own names and looks; standard input is never read.
Catalogue LibraryCatalogue();

enum class ListKind { None, Effects, Fonts, Palettes, Keys, Controls, Textures, Fountains, Tiles, Looks };

struct Arguments {
  Job job;
  std::string output;     ///< file, folder with framesAsPng, or "-"; empty: none
  std::string extension;  ///< of the output's format, ".gif"; with framesAsPng "folder"
  bool framesAsPng = false;
  std::string recordFolder;       ///< empty: none
  std::string saveLookFile;       ///< a look to write once the run is done; empty: none
  std::vector<Look::Entry> look;  ///< what that look holds
  ListKind list = ListKind::None;
  bool quiet = false;
  bool json = false;               ///< the result, or the list, as JSON on standard output
  std::optional<bool> progress;    ///< nothing: only when standard error is a terminal
  std::vector<std::string> notes;  ///< sentences about options that change nothing together with others
  std::vector<std::pair<std::string, std::string>> optionOfKey;  ///< settings that have a named option
};

/// What the options mean. Throws UsageError.
Arguments ReadOptions(TypedWords typed, const Catalogue& catalogue);

/// The palette that --palette names, in any case or as a number; nothing when there is none.
std::optional<Job::Palette> PaletteOfOption(const std::string& word);

/// The axes of --font-variation. Throws UsageError.
std::vector<std::pair<std::string, double>> AxesOfOption(const std::string& text);

/// The names of the fixed palettes of --palette, in the order of the palettes' numbers: bw, windows16, ...
const std::vector<std::string>& PaletteOptionNames();

/// A sentence about a job's settings with the option's name in the place of each setting that an option made.
std::string InOptionTerms(std::string sentence, const Arguments& arguments);

}  // namespace glyphmotion
