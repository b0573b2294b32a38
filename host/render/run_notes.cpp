// SPDX-License-Identifier: MIT
#include "host/render/run_notes.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "controls/read_controls.h"
#include "controls/variables.h"
#include "effects/effect_table.h"
#include "platform/text_engine.h"
#include "resources/templates.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

// Keys that have no control but that a run reads.
constexpr std::string_view kReadByRuns[] = {"AccentCompensation", "AlphaGreyBack",   "BestPalette",
                                            "DitherBrightness",   "DitherContrast",  "FastRemap",
                                            "RegistrationCode",   "RegistrationName"};

struct Target {
  const ControlTemplate* control = nullptr;
  const DialogTemplate* panel = nullptr;
};

Target TargetOf(const std::string& keyOrId) {
  Target target;
  int id = 0;
  const char* end = keyOrId.data() + keyOrId.size();
  const auto [stop, error] = std::from_chars(keyOrId.data(), end, id);
  const bool isId = error == std::errc() && stop == end;
  target.control = isId ? FindControlOfId(id, &target.panel) : FindControlOfKey(keyOrId.c_str(), &target.panel);
  return target;
}

bool HasControl(const DialogTemplate& panel, int id) {
  return std::any_of(panel.controls.begin(), panel.controls.end(),
                     [&](const ControlTemplate& control) { return control.id == id; });
}

/// Where the setting has no effect; nothing when it has one.
std::optional<std::string> WhyIdle(const EffectDescriptor& effect, const Job& job, const std::string& key) {
  const Target target = TargetOf(key);
  const std::string here = std::string("the effect ") + effect.name;
  if (!target.control) {
    const bool read = std::find(std::begin(kReadByRuns), std::end(kReadByRuns), key) != std::end(kReadByRuns);
    return read || key.starts_with('@') ? std::nullopt : std::optional<std::string>("a run");
  }
  const int id = target.control->id;
  const bool timed = job.action == Job::Action::Build || job.action == Job::Action::Test;
  if (id == ControlId::Animated && !(effect.traits & kCanStandStill)) return here;
  if (id == ControlId::Pause && timed && effect.traits & kLoops) return here + ", which never rests";
  if (target.panel != &kMainDialogTemplate && !HasControl(*effect.panel, id)) return here;
  return std::nullopt;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

FontRequest RequestOf(const Dialog& dialog) {
  return {GetText(dialog, ControlId::Font), ReadNumber(dialog, ControlId::Size), ReadCheck(dialog, ControlId::Bold),
          ReadCheck(dialog, ControlId::Italic)};
}

}  // namespace

std::vector<std::string> IdleSettings(const Dialog& dialog, const Job& job) {
  std::vector<std::string> notes;
  if (!job.saveDocumentFile.empty() || !job.settingsFile.empty() || job.action == Job::Action::None) return notes;
  const EffectDescriptor& effect = EffectRow(GetSelection(dialog, ControlId::Effect));
  for (const auto& [key, value] : job.settings) {
    const auto why = WhyIdle(effect, job, key);
    const std::string note = why ? "'" + key + "' changes nothing in " + *why + "; leave it out" : std::string();
    if (why && std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
  }
  return notes;
}

std::vector<std::string> FontNotes(const Dialog& dialog, const std::string& asked) {
  std::vector<std::string> notes;
  const FontRequest request = RequestOf(dialog);
  const std::string used = FamilyUsed(request);
  const std::string& wanted = asked.empty() ? request.family : asked;
  if (!asked.empty() && !used.empty() && !EqualsIgnoringCase(used, wanted)) {
    notes.push_back("the font '" + wanted + "' is not installed; '" + used + "' is used instead");
  }
  return notes;
}

void ShortFrames::Add(int delay) {
  const bool isShort = delay <= limit_;
  run_ = isShort ? run_ + 1 : 0;
  ++frames_;
  short_ += isShort;
  longest_ = std::max(longest_, run_);
}

std::string ShortFrames::Note() const {
  if (longest_ < 2 || 10 * short_ < 9 * frames_) return {};
  return std::to_string(longest_) + " frames in a row last 10 ms or less; most viewers show them slower, so choose a " +
         "delay of more than 10 ms";
}

}  // namespace glyphmotion
