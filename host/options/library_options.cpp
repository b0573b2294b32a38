// SPDX-License-Identifier: MIT
#include "host/options/library_options.h"

#include <algorithm>
#include <string_view>

#include "glyphmotion/render.h"
#include "host/options/names.h"
#include "host/options/option_table.h"
#include "host/options/values.h"
#include "platform/nearest_name.h"

namespace glyphmotion {
namespace {

bool DescribesPicture(const OptionRow& row) {
  const std::string_view group = row.group;
  const std::string name = LongName(row);
  return group != kHostGroup && group != kHelpGroup && name != "--output" && name != "--frames-as" &&
         name != "--save-look";
}

const OptionRow* FindPictureOption(const std::string& name) {
  const OptionRow* row = name.starts_with('-') ? nullptr : FindOption(name);
  return row && DescribesPicture(*row) && LongName(*row) == "--" + name ? row : nullptr;
}

void Erase(std::string& text, std::string_view begin, char end) {
  const std::size_t from = text.find(begin);
  if (from == std::string::npos) return;
  const std::size_t to = text.find(end, from + begin.size());
  text.erase(from, to == std::string::npos || end != ')' ? to - from : to + 1 - from);
}

}  // namespace

std::vector<std::string> LibraryOptionNames() {
  std::vector<std::string> names = {"text"};
  for (const OptionRow& row : OptionRows()) {
    if (DescribesPicture(row)) names.push_back(LongName(row).substr(2));
  }
  return names;
}

std::vector<std::string> EffectOptionNames() {
  std::vector<std::string> names = EffectNames();
  std::transform(names.begin(), names.end(), names.begin(), OptionForm);
  return names;
}

void SetLibraryOption(TypedWords& typed, const std::string& name, const std::optional<std::string>& value) {
  const OptionRow* row = FindPictureOption(name);
  if (!row) Refuse("there is no option '" + name + "'" + Suggestion(name, LibraryOptionNames()));
  const std::string option = LongName(*row);
  if (!value) return typed.Put(option, {});
  if (value->empty()) Refuse(option + " '' is empty; give a value or leave it out");
  if (!row->form) {
    if (*value == "0" || *value == "1") return typed.Put(option, {*value});
    if (!*row->words) Refuse(option + " takes 1 or 0, not '" + *value + "'");
    CheckValue(*row, *value);
    return typed.Put(option, {*value});
  }
  CheckValue(*row, *value);
  std::vector<std::string> values = row->repeats ? typed.Values(option) : std::vector<std::string>();
  values.push_back(*value);
  typed.Put(option, std::move(values));
}

std::string InLibraryTerms(std::string sentence) {
  Erase(sentence, " (see --list", ')');
  Erase(sentence, "; see --list", ';');
  for (std::size_t at = 0; (at = sentence.find("--", at)) != std::string::npos;) {
    const bool begins = at == 0 || sentence[at - 1] == ' ' || sentence[at - 1] == '\'';
    const char next = at + 2 < sentence.size() ? sentence[at + 2] : ' ';
    if (begins && next >= 'a' && next <= 'z') {
      sentence.erase(at, 2);
    } else {
      at += 2;
    }
  }
  return sentence;
}

}  // namespace glyphmotion
