// SPDX-License-Identifier: MIT
#include "host/options/looks.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>

#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

#include "host/options/names.h"
#include "host/options/typed_words.h"
#include "host/options/values.h"
#include "materials/material_text.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLookBytes = 65536;
constexpr const char* kExtension = ".toml";

// Of a material that needs no other file than the shipped libraries.
std::string MaterialTrouble(const std::string& option, const std::string& value) {
  if (option != "--fill" && option != "--shadow" && option != "--background") return {};
  if (value == "none") return {};
  for (const char* prefix : {"image:", "mtrl:"}) {
    if (value.starts_with(prefix))
      return option + " '" + value + "' needs a file beside the look; use another material";
  }
  Colour colour = 0;
  int alpha = 0;
  Material material;
  DefaultMaterial(material, 0);
  std::string error;
  return ParseColourAndAlpha(value, colour, alpha) || ParseMaterial(value, material, error) ? std::string() : error;
}

class LookReader {
 public:
  explicit LookReader(std::string path) : path_(std::move(path)) {}

  void Read(Look& look) {
    std::string why;
    const std::optional<std::string> text = ReadWholeFile(path_, kLargestFile, &why);
    if (!text) Refuse("the look '" + path_ + "' cannot be read: " + why);
    if (text->size() > kMostLookBytes) Refuse("the look '" + path_ + "' is too long; it may have 64 KiB");
    try {
      const toml::table table = toml::parse(*text, path_);
      for (const auto& [key, node] : table) ReadKey(look, std::string(key.str()), node);
    } catch (const toml::parse_error& error) {
      Refuse(At(error.source().begin.line) + ": " + std::string(error.description()) +
             "; a text needs quotation marks, as in fill = \"gold\"");
    }
  }

 private:
  std::string At(toml::source_index line) const { return "the look '" + path_ + "', line " + std::to_string(line); }

  void ReadKey(Look& look, const std::string& key, const toml::node& node) const {
    const std::string origin = At(node.source().begin.line);
    const OptionRow* row = FindOption(key);
    if (!row || key.starts_with('-')) {
      const std::string name = key.starts_with("--") ? key.substr(2) : key;
      Refuse(origin + ": there is no option '" + key + "'" + Suggestion(name, LookOptionNames()));
    }
    if (!MayStandInLook(*row))
      Refuse(origin + ": '" + key + "' cannot be part of a look; it belongs on the command line");
    if (LongName(*row) == "--set") return ReadSettings(look, node);
    Look::Entry entry{LongName(*row), Values(*row, key, node, origin), origin};
    if (entry.values.empty()) return;
    try {
      for (const std::string& value : entry.values) {
        if (row->form || node.is_string()) CheckValue(*row, value);
      }
    } catch (const UsageError& error) {
      Refuse(origin + ": " + error.sentence);
    }
    const std::string trouble = MaterialTrouble(entry.option, entry.values.front());
    if (!trouble.empty()) Refuse(origin + ": " + key + ": " + trouble);
    look.entries.push_back(std::move(entry));
  }

  void ReadSettings(Look& look, const toml::node& node) const {
    const toml::table* table = node.as_table();
    if (!table)
      Refuse(At(node.source().begin.line) + ": 'set' is a table; write [set] and then lines such as \"@rotate\" = 90");
    for (const auto& [key, value] : *table) {
      const std::string origin = At(value.source().begin.line);
      look.entries.push_back(
          {"--set", {std::string(key.str()) + "=" + Word(std::string(key.str()), value, origin)}, origin});
    }
  }

  // A flag is true or false; one without a counterpart can only be true.
  static std::vector<std::string> FlagValue(const OptionRow& row, const std::string& key, bool on) {
    if ("--" + key == NegativeName(row)) return {on ? "0" : "1"};
    if (on) return {"1"};
    return NegativeName(row).empty() ? std::vector<std::string>() : std::vector<std::string>{"0"};
  }

  std::vector<std::string> Values(const OptionRow& row, const std::string& key, const toml::node& node,
                                  const std::string& origin) const {
    const bool isWord = *row.words && node.is_string();  // as in dither = "stable"
    if (!row.form && !isWord) {
      const auto on = node.value_exact<bool>();
      if (!on) Refuse(origin + ": '" + key + "' takes true or false");
      return FlagValue(row, key, *on);
    }
    const toml::array* list = node.as_array();
    if (!list) return {Word(key, node, origin)};
    if (key != "font" || list->empty()) Refuse(origin + ": '" + key + "' takes one value, not a list");
    std::vector<std::string> values;
    for (const toml::node& each : *list) values.push_back(Word(key, each, origin));
    return values;
  }

  static std::string Word(const std::string& key, const toml::node& node, const std::string& origin) {
    if (const auto text = node.value_exact<std::string>(); text && !text->empty()) return *text;
    if (const auto number = node.value_exact<std::int64_t>()) return std::to_string(*number);
    if (const auto on = node.value_exact<bool>()) return *on ? "1" : "0";
    Refuse(origin + ": '" + key + "' takes a text in quotation marks or a whole number");
  }

  std::string path_;
};

// The user's own folder first.
std::vector<fs::path> Folders() {
  std::vector<std::string> folders = {DataFolder()};
  for (std::string& folder : ShippedFolders()) folders.push_back(std::move(folder));
  std::vector<fs::path> paths;
  for (const std::string& folder : folders) {
    if (!folder.empty()) paths.push_back(fs::path(folder) / "looks");
  }
  return paths;
}

std::map<std::string, fs::path> LookFiles() {
  std::map<std::string, fs::path> files;
  for (const fs::path& folder : Folders()) {
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
      if (it->path().extension() == kExtension) files.emplace(it->path().stem().string(), it->path());
    }
  }
  return files;
}

std::string FirstLine(const fs::path& path) {
  const std::string text = ReadWholeFile(path.string()).value_or("");
  const std::size_t end = text.find('\n'), begin = text.find_first_not_of("# ");
  return text.starts_with('#') && begin < end ? text.substr(begin, end - begin) : std::string();
}

bool IsFileName(const std::string& word) { return word.find('/') != std::string::npos || word.ends_with(kExtension); }

}  // namespace

Look ReadLook(const std::string& nameOrFile) {
  std::string path = nameOrFile;
  if (!IsFileName(nameOrFile)) {
    const auto files = LookFiles();
    const auto found = files.find(OptionForm(nameOrFile));
    if (found == files.end()) {
      std::vector<std::string> names;
      for (const auto& [name, file] : files) names.push_back(name);
      if (names.empty())
        Refuse(
            "no look is installed; install the program together with its share folder, or name that in "
            "GLYPHMOTION_DATA");
      Refuse("there is no look '" + nameOrFile + "'" + Suggestion(nameOrFile, names) + " (see --list looks)");
    }
    path = found->second.string();
  }
  Look look;
  LookReader(path).Read(look);
  return look;
}

std::vector<LookInfo> Looks() {
  std::vector<LookInfo> looks;
  for (const auto& [name, path] : LookFiles()) looks.push_back({name, FirstLine(path)});
  return looks;
}

}  // namespace glyphmotion
