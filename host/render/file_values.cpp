// SPDX-License-Identifier: MIT
#include "host/render/file_values.h"

#include <algorithm>
#include <charconv>

#include "controls/families.h"
#include "controls/read_controls.h"
#include "controls/variables.h"
#include "effects/effect_table.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

const ControlTemplate* ControlOf(const std::string& keyOrId) {
  int id = 0;
  const char* end = keyOrId.data() + keyOrId.size();
  const auto [stop, error] = std::from_chars(keyOrId.data(), end, id);
  return error == std::errc() && stop == end ? FindControlOfId(id) : FindControlOfKey(keyOrId.c_str());
}

/// Whether the control's value is one number, in its variable and in its line of a document. (Custom palette has no
/// key: it lasts for one run, and a document stores what the run used.)
bool IsKept(const ControlTemplate& control) {
  return control.key && (control.kind == ControlKind::Check || control.kind == ControlKind::NumberEdit);
}

/// The start of the control's line in a document: "SPNBTN11".
std::string LineStart(int control) {
  const ControlTemplate* found = FindControlOfId(control);
  const ControlFamily* family = found ? FamilyOfKind(found->kind) : nullptr;
  return family ? family->stem + std::to_string(control) : std::string();
}

constexpr std::string_view kGuard = "\u200B";

}  // namespace

std::string GuardedText(const std::string& text) {
  return text.starts_with(' ') || text.starts_with('=') ? std::string(kGuard) + text : text;
}

std::string UnguardedText(const std::string& text) {
  return text.starts_with(kGuard) ? text.substr(kGuard.size()) : text;
}

bool FileValues::IsSaid(const char* key, int control) const {
  return (key && settings_.keys.contains(key)) || document_.controls.contains(LineStart(control));
}

void FileValues::TakeSettings() {
  kept_ = {{"MainDelay", ControlId::Delay}, {"MainPause", ControlId::Pause}};
  for (Kept& time : kept_) {
    time.number = NumberVariable(time.key);
    time.said = settings_.keys.contains(time.key);
    time.milliseconds = time.said && settings_.milliseconds;
  }
}

void FileValues::TakeDocument(DocumentSummary document) {
  document_ = std::move(document);
  for (Kept& time : kept_) {
    if (!document_.controls.contains(LineStart(time.control))) continue;
    time.number = NumberVariable(time.key);
    time.said = true;
    time.milliseconds = document_.milliseconds;
  }
}

std::int64_t FileValues::InOutputUnit(const Kept& time) const {
  const std::int64_t number = time.number;
  if (time.milliseconds == !job_.paletteFormat) return number;
  return time.milliseconds ? (number + 5) / 10 : number * 10;
}

std::vector<Job::Setting> FileValues::RunValues(const Dialog& dialog, std::vector<std::string>& notes) {
  std::vector<Job::Setting> values;
  const char* unit = job_.paletteFormat ? "/100 s" : " ms";
  for (const Kept& time : kept_) {
    if (!time.said) continue;
    const ControlRange range = RangeOf(dialog, time.control + kUpDownOffset);
    const std::int64_t wanted = InOutputUnit(time);
    const std::int64_t used = std::clamp<std::int64_t>(wanted, range.minimum, range.maximum);
    if (used != time.number) values.emplace_back(time.key, std::to_string(used));
    if (used == wanted) continue;
    notes.push_back((time.control == ControlId::Delay ? "the file's delay of " : "the file's pause of ") +
                    std::to_string(wanted) + unit + " is out of range here; " + std::to_string(used) + unit +
                    " is used");
  }
  for (const Job::Setting& setting : job_.defaults) {
    const ControlTemplate* control = ControlOf(setting.first);
    if (control && IsSaid(control->key, control->id)) continue;
    values.push_back(setting);
    if (!control || !IsKept(*control)) continue;
    const auto isKept = [&](const Kept& kept) { return kept.control == control->id; };
    if (std::none_of(kept_.begin(), kept_.end(), isKept)) {
      kept_.push_back({control->key, control->id, false, false, false, false, NumberVariable(control->key)});
    }
  }
  return values;
}

void FileValues::TakeOption(const std::string& key) {
  const ControlTemplate* control = ControlOf(key);
  for (Kept& kept : kept_) kept.byOption |= control && control->id == kept.control;
}

bool FileValues::SavesMilliseconds() const {
  return std::any_of(kept_.begin(), kept_.end(), [&](const Kept& kept) {
    return kept.isTime && (kept.byOption ? !job_.paletteFormat : kept.milliseconds);
  });
}

std::vector<FileValues::Saved> FileValues::SavedNumbers() const {
  const bool milliseconds = SavesMilliseconds();
  std::vector<Saved> saved;
  for (const Kept& kept : kept_) {
    std::uint64_t number = kept.byOption ? NumberVariable(kept.key) : kept.number;
    const bool already = kept.byOption ? !job_.paletteFormat : kept.milliseconds;
    if (kept.isTime && milliseconds && !already) number *= 10;
    saved.push_back({&kept, static_cast<std::uint32_t>(std::min<std::uint64_t>(number, UINT32_MAX))});
  }
  return saved;
}

DocumentChanges FileValues::ForDocument(const Dialog& dialog) const {
  DocumentChanges changes;
  const std::string text = GetText(dialog, ControlId::Text), guarded = GuardedText(text);
  if (guarded != text) changes.values.emplace_back(ControlId::Text, guarded);
  if (SavesMilliseconds()) changes.remark = kMillisecondsRemark;
  for (const Saved& saved : SavedNumbers()) {
    changes.values.emplace_back(saved.kept->control, std::to_string(saved.number));
  }
  return changes;
}

std::string_view FileValues::ForSettings() const {
  const std::string_view remark = SavesMilliseconds() ? kMillisecondsRemark : std::string_view();
  for (const Saved& saved : SavedNumbers()) FindVariable(saved.kept->key)->number = saved.number;
  return remark;
}

}  // namespace glyphmotion
