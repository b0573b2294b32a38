// SPDX-License-Identifier: MIT
// A look beneath the options of the command line.
#include <algorithm>
#include <string_view>

#include "effects/effect_table.h"
#include "host/options/argument_parts.h"
#include "host/options/names.h"

namespace glyphmotion {
namespace {

// What was typed instead of an option of the look. A banner of a given height has no room for padding.
bool IsReplaced(const TypedWords& typed, const std::string& option) {
  static constexpr std::pair<const char*, const char*> kRivals[] = {
      {"--delay", "--fps"}, {"--fps", "--delay"}, {"--font", "--font-file"}, {"--pad", "--height"}};
  return std::any_of(std::begin(kRivals), std::end(kRivals),
                     [&](const auto& rival) { return option == rival.first && typed.Has(rival.second); });
}

// Whether an option of a look made for another effect means anything to this one. What is the other's own, such as its
// number of frames, does not.
bool SuitsEffect(const Look::Entry& entry, const PanelRoles& roles) {
  const OptionRow& row = *FindOption(entry.option);
  const std::string_view key = row.key ? row.key : entry.option == "--set" ? entry.values.front() : std::string_view();
  if (entry.option == "--shadow") return roles.shadow != 0;
  if (entry.option == "--fill") return roles.fill != 0;
  if (entry.option == "--outline") return roles.outline != 0;
  if (key == "@soft") return roles.softness != 0;
  return !key.starts_with('@');
}

// The panel of an effect that was typed in the place of the look's own; null if there is none.
const PanelRoles* OtherEffect(const TypedWords& typed, const Look& look) {
  if (!typed.Has("--effect")) return nullptr;
  const std::string effect = OptionForm(typed.Value("--effect"));
  const int row = FindEffect(effect);
  const bool same = std::any_of(look.entries.begin(), look.entries.end(), [&](const Look::Entry& entry) {
    return entry.option == "--effect" && OptionForm(entry.values.front()) == effect;
  });
  return row < 0 || same ? nullptr : &EffectRow(row).panel->roles;
}

// The first of the look's families that is installed.
std::vector<std::string> InstalledFont(Reading& reading, const Look::Entry& entry) {
  const auto& hasFont = reading.catalogue.hasFont;
  for (const std::string& family : entry.values) {
    if (!hasFont || hasFont(family)) return {family};
  }
  reading.arguments.notes.push_back("the look's font '" + entry.values.front() +
                                    "' is not installed; the default font is used");
  return {};
}

}  // namespace

bool MayStandInLook(const OptionRow& row) {
  static constexpr std::string_view kOutputRows[] = {"--width", "--height", "--fit", "--loop", "--start"};
  const std::string_view group = row.group;
  const std::string name = LongName(row);
  if (group == "Output")
    return std::find(std::begin(kOutputRows), std::end(kOutputRows), name) != std::end(kOutputRows);
  if (group == "Settings") return name == "--set";
  return group != "Help" && group != kHostGroup && name != "--text-file" && name != "--font-file";
}

std::vector<std::string> LookOptionNames() {
  std::vector<std::string> names;
  for (const OptionRow& row : OptionRows()) {
    if (MayStandInLook(row)) names.push_back(LongName(row).substr(2));
  }
  return names;
}

void ReadLookOption(Reading& reading) {
  TypedWords& typed = reading.typed;
  if (!typed.Has("--look")) return;
  if (!reading.catalogue.readLook) Refuse("--look is not available here; set its options one by one");
  const Look look = reading.catalogue.readLook(typed.Value("--look"));
  const PanelRoles* other = OtherEffect(typed, look);
  const TypedWords before = typed;
  for (Look::Entry entry : look.entries) {
    if (before.Has(entry.option) && entry.option != "--set") continue;
    if (IsReplaced(before, entry.option) || (other && !SuitsEffect(entry, *other))) continue;
    if (entry.option == "--font") entry.values = InstalledFont(reading, entry);
    if (entry.values.empty()) continue;
    if (entry.option != "--set") typed.Put(entry.option, entry.values);
    reading.look.push_back(std::move(entry));
  }
}

void ReadLookSettings(Reading& reading) {
  for (const Look::Entry& entry : reading.look) {
    if (entry.option != "--set") continue;
    const std::string& pair = entry.values.front();
    try {
      AddSetting(reading, pair);
    } catch (const UsageError& error) {
      Refuse(entry.origin + ": " + error.sentence);
    }
    const std::string key = pair.substr(0, pair.find('='));
    reading.arguments.optionOfKey.emplace_back(key, entry.origin + ": '" + key + "'");
  }
}

void KeepLook(Reading& reading) {
  std::vector<Look::Entry>& kept = reading.arguments.look;
  for (const OptionRow& row : OptionRows()) {
    const std::string name = LongName(row);
    if (MayStandInLook(row) && name != "--set" && reading.typed.Has(name))
      kept.push_back({name, reading.typed.Values(name), {}});
  }
  for (const Look::Entry& entry : reading.look) {
    if (entry.option == "--set") kept.push_back(entry);
  }
  for (const std::string& pair : reading.typed.Values("--set")) kept.push_back({"--set", {pair}, {}});
}

std::string WithOrigin(const Reading& reading, std::string sentence) {
  for (const Look::Entry& entry : reading.look) {
    const bool about = sentence.starts_with(entry.option + " ") ||
                       sentence.find("'" + entry.values.front() + "'") != std::string::npos;
    if (about) return entry.origin + ": " + sentence;
  }
  return sentence;
}

}  // namespace glyphmotion
