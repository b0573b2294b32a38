// SPDX-License-Identifier: MIT
#include "host/render/render_user.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "controls/families.h"
#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "host/encoders/out_of_memory.h"
#include "host/render/job_fields.h"
#include "host/render/picker_words.h"
#include "host/render/run_notes.h"
#include "materials/colour_text.h"
#include "materials/material_text.h"
#include "materials/tile.h"
#include "platform/ascii.h"
#include "platform/dialog_driver.h"
#include "platform/encoding.h"
#include "platform/font_files.h"
#include "platform/text_engine.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "shell/documents.h"
#include "shell/main_controls.h"
#include "shell/sample.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kMaxTextLength = 260, kMaxLongText = 4096;

std::optional<std::int64_t> ParseInteger(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<bool> ParseSwitch(const std::string& text) {
  for (const char* yes : {"1", "on", "yes", "true"}) {
    if (EqualsIgnoringCase(text, yes)) return true;
  }
  for (const char* no : {"0", "off", "no", "false"}) {
    if (EqualsIgnoringCase(text, no)) return false;
  }
  return std::nullopt;
}

// A line break inside is U+2028, which an edit of one line takes.
std::string WithInnerBreaks(const std::string& text) {
  std::string inner;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (text[i] != '\n' && text[i] != '\r') {
      inner += text[i];
    } else if (!pair) {
      inner += "\xE2\x80\xA8";
    }
  }
  return inner;
}

std::string Quote(const std::string& text) { return "'" + text + "'"; }

// The cell of a word or an index; -1 for neither. An axis is also given by a direction along it.
int PickerCell(ControlKind kind, std::string_view value) {
  const auto words = PickerWords(kind);
  if (kind == ControlKind::ScrollAxis) {
    if (EqualsIgnoringCase(value, "left") || EqualsIgnoringCase(value, "right")) return 0;
    if (EqualsIgnoringCase(value, "up") || EqualsIgnoringCase(value, "down")) return 1;
  }
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (EqualsIgnoringCase(words[i], value)) return static_cast<int>(i);
  }
  const std::optional<std::int64_t> number = ParseInteger(value);
  return number && *number >= 0 && *number < std::ssize(words) ? static_cast<int>(*number) : -1;
}

std::string Listed(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

// The control of the effect's panel with an option's name, case ignored: "frames" for Style008Frames. The shadow's
// softness goes by its role, as one panel has no key for it.
const ControlTemplate* FindInPanel(const EffectDescriptor& effect, std::string_view name) {
  for (const ControlTemplate& control : effect.panel->controls) {
    if (!name.empty() && EqualsIgnoringCase(OptionName(control.key), name)) return &control;
  }
  const int softness = effect.panel->roles.softness;
  return softness && EqualsIgnoringCase(name, "soft") ? FindControlOfId(softness) : nullptr;
}

// What may follow an "@" for the effect.
std::string OptionNames(const EffectDescriptor& effect) {
  std::string names;
  for (const ControlTemplate& control : effect.panel->controls) {
    const std::string name(OptionName(control.key));
    if (!name.empty()) names += (names.empty() ? "" : ", ") + name;
  }
  return names;
}

std::string AllEffects() {
  std::string names;
  for (const EffectDescriptor* effect : Effects()) names += (names.empty() ? "" : ", ") + std::string(effect->name);
  return names;
}

const EffectDescriptor& CurrentEffect(const Dialog& dialog) {
  return EffectRow(GetSelection(dialog, ControlId::Effect));
}

}  // namespace

ScriptedUser::ScriptedUser(const Job& job, const std::vector<std::string>& messages, SettingsSummary settings)
    : job_(WithFieldsAsSettings(job)),
      messages_(messages),
      fontOfSettings_(settings.keys.contains("MainFontName")),
      values_(job_, std::move(settings)) {}

bool ScriptedUser::Fail(std::string sentence) {
  if (error_.empty()) error_ = InFieldTerms(std::move(sentence), job_);
  return false;
}

bool ScriptedUser::FailRun(std::string sentence) {
  runFailed_ = true;
  return Fail(std::move(sentence));
}

void ScriptedUser::Play(Dialog& dialog, const std::function<void(const PackedDib&)>& sample) {
  values_.TakeSettings();
  started_ = true;
  if (fontOfSettings_) TakeFontOfFile(TextVariable("MainFontName"));
  if (!LoadDocumentFirst(dialog) || !ApplyAll(dialog, values_.RunValues(dialog, notes_)) || !ApplyOptions(dialog))
    return;
  TakeNotes(dialog);
  played_ = Finish(dialog, sample);
}

// Every file names a font; the built-in default there was not chosen by anyone.
void ScriptedUser::TakeFontOfFile(const std::string& family) {
  fontAsked_ = family == FindVariable("MainFontName")->row->defaultText ? std::string() : family;
}

bool ScriptedUser::ApplyAll(Dialog& dialog, const std::vector<Job::Setting>& settings) {
  return std::all_of(settings.begin(), settings.end(), [&](const auto& setting) { return Apply(dialog, setting); });
}

bool ScriptedUser::ApplyOptions(Dialog& dialog) {
  if (job_.font && !job_.fontFile.empty()) return Fail("a font and a font file cannot be used together; leave one out");
  if (!ChooseEffect(dialog) || !SetFontFile(dialog) || (job_.text && !Apply(dialog, {"MainText", *job_.text})) ||
      !SetMaterials(dialog))
    return false;
  for (const Job::Setting& setting : job_.settings) values_.TakeOption(setting.first);
  return ApplyAll(dialog, job_.settings) && CheckAxes(dialog);
}

void ScriptedUser::TakeNotes(const Dialog& dialog) {
  const auto add = [&](std::vector<std::string> more) { notes_.insert(notes_.end(), more.begin(), more.end()); };
  if (job_.text && !IsUtf8(*job_.text)) notes_.push_back("the text is not valid UTF-8; it is read as Windows-1252");
  for (const std::string& note : IdleSettings(dialog, job_)) notes_.push_back(InFieldTerms(note, job_));
  if (job_.action != Job::Action::None) add(FontNotes(dialog, fontAsked_));
}

bool ScriptedUser::LoadDocumentFirst(Dialog& dialog) {
  if (job_.documentFile.empty()) return true;
  const std::size_t before = messages_.size();
  LoadDocument(dialog, job_.documentFile);
  if (messages_.size() > before && messages_.back() == LoadText(kTextMemoryError)) return FailRun(kOutOfMemory);
  if (messages_.size() > before)
    return Fail("the document " + Quote(job_.documentFile) + " cannot be loaded: " + messages_.back());
  Pump(dialog);
  // A document may switch on options that this kind of output lacks; a person could not.
  for (const int id :
       {MainControl::TrueColour, ControlId::AlphaTransparency, MainControl::Transparent, MainControl::Supercompress}) {
    if (!IsEnabled(dialog, id) && !SetByLine(dialog, id, "0")) return false;
  }
  DocumentSummary document = SummariseDocument(job_.documentFile);
  if (!document.complete)
    notes_.push_back("the document " + Quote(job_.documentFile) +
                     " has no closing line and may be incomplete; its contents are used");
  // The dialog leaves the font as it is; a script has no other means of setting it.
  if (!document.font.empty() && HasFontFamily(document.font)) SetFont(dialog, document.font);
  if (!document.font.empty()) TakeFontOfFile(document.font);
  values_.TakeDocument(std::move(document));
  return true;
}

// A font file is set as it is: bold and italic only for whom asks.
bool ScriptedUser::SetFontFile(Dialog& dialog) {
  const FontFile& file = CurrentTextRun().fontFile;
  return job_.fontFile.empty() || (Apply(dialog, {"MainFontName", file.family}) &&
                                   Apply(dialog, {"MainFontBold", "0"}) && Apply(dialog, {"MainFontItalic", "0"}));
}

bool ScriptedUser::CheckAxes(Dialog& dialog) {
  const FontRequest font{GetText(dialog, ControlId::Font), 24, GetCheck(dialog, ControlId::Bold),
                         GetCheck(dialog, ControlId::Italic)};
  const std::string trouble = AxesTrouble(font);
  return trouble.empty() || Fail(trouble);
}

bool ScriptedUser::ChooseEffect(Dialog& dialog) {
  if (!job_.effect) return true;
  const int index = FindEffect(*job_.effect);
  if (index < 0) return Fail("there is no effect " + Quote(*job_.effect) + "; the effects are " + AllEffects());
  Choose(dialog, ControlId::Effect, index);
  return true;
}

bool ScriptedUser::SetMaterials(Dialog& dialog) {
  const PanelRoles& roles = CurrentEffect(dialog).panel->roles;
  return SetRole(dialog, job_.fill, {"fill", roles.fill, roles.fillOpacity, 0}) &&
         SetRole(dialog, job_.shadow, {"shadow", roles.shadow, roles.shadowOpacity, roles.shadowEnable}) &&
         SetRole(dialog, job_.background, {"background", roles.background, 0, 0}) && SetOutline(dialog);
}

// A fill, or "none" where there is a check for it. A colour's alpha goes to the opacity.
bool ScriptedUser::SetRole(Dialog& dialog, const std::string& value, const RoleControls& role) {
  if (value.empty()) return true;
  const std::string effect = std::string("the effect ") + CurrentEffect(dialog).name;
  const bool none = EqualsIgnoringCase(value, "none");
  if (!role.material)  // a shadow that is not wanted suits an effect without one
    return (none && role.name == std::string_view("shadow")) ||
           Fail(effect + " has no " + role.name + "; leave it out");
  if (role.enable && none) return SetByLine(dialog, role.enable, "0");
  Colour colour = 0;
  int alpha = 255;
  if (!ParseColourAndAlpha(value, colour, alpha) || alpha == 255) return FillWith(dialog, role.material, value);
  if (!role.opacity)
    return Fail(std::string("the ") + role.name + " " + Quote(value) +
                " has an alpha value, which is not possible here; write #RRGGBB");
  return FillWith(dialog, role.material, HexColour(colour)) && SetByLine(dialog, role.opacity, std::to_string(alpha));
}

bool ScriptedUser::SetOutline(Dialog& dialog) {
  const PanelRoles& roles = CurrentEffect(dialog).panel->roles;
  if (job_.outline.empty()) return true;
  if (EqualsIgnoringCase(job_.outline, "none")) return SetByLine(dialog, roles.outlineEnable, "0");
  return SetColour(dialog, roles.outline, job_.outline);
}

bool ScriptedUser::Apply(Dialog& dialog, const Job::Setting& setting) {
  const std::string& key = setting.first;
  if (!key.empty() && key.front() == '@') {
    const ControlTemplate* control = FindInPanel(CurrentEffect(dialog), std::string_view(key).substr(1));
    if (control) return ApplyToControl(dialog, *control, setting);
    return Fail(std::string("the effect ") + CurrentEffect(dialog).name + " has no option " + Quote(key) +
                "; its options are " + OptionNames(CurrentEffect(dialog)));
  }
  const std::optional<std::int64_t> id = ParseInteger(key);
  const ControlTemplate* control =
      id && *id > 0 && *id < 20000 ? FindControlOfId(static_cast<int>(*id)) : FindControlOfKey(key.c_str());
  if (control) return ApplyToControl(dialog, *control, setting);
  if (id) return Fail("there is no control " + key);
  Variable* variable = FindVariable(key);
  if (!variable) return Fail("there is no key " + Quote(key));
  if (variable->row->flags & kSettingText) {
    variable->text = CutCharacters(setting.second, kMaxTextLength);
    return true;
  }
  if (variable->row->flags & kSettingSwitch) {
    const std::optional<bool> on = ParseSwitch(setting.second);
    if (on) variable->number = *on;
    return on || Fail(key + " takes 0 or 1, not " + Quote(setting.second));
  }
  const std::optional<std::int64_t> number = ParseInteger(setting.second);
  if (!number || *number < 0 || *number > UINT32_MAX)
    return Fail(key + " takes a whole number, 0 or more, not " + Quote(setting.second));
  variable->number = static_cast<std::uint32_t>(*number);
  return true;
}

// Controls of hidden panels take their value as they do from a document.
bool ScriptedUser::ApplyToControl(Dialog& dialog, const ControlTemplate& control, const Job::Setting& setting) {
  const std::string& value = setting.second;
  const int id = control.id;
  const Target to{id, setting.first.starts_with('@') ? Quote(setting.first) : setting.first, IsVisible(dialog, id)};
  if (to.reachable && !IsEnabled(dialog, id)) {
    return GetText(dialog, id) == value || std::to_string(GetCheck(dialog, id)) == value || Refused(to);
  }
  switch (control.kind) {
    case ControlKind::NumberEdit:
      return ApplyNumber(dialog, to, value);
    case ControlKind::Check: {
      const std::optional<bool> on = ParseSwitch(value);
      if (!on) return Fail(to.key + " takes 0 or 1, not " + Quote(value));
      if (!to.reachable) return SetByLine(dialog, id, *on ? "1" : "0");
      return GetCheck(dialog, id) == *on || Click(dialog, id) || Refused(to);
    }
    case ControlKind::Edit:
      return ApplyText(dialog, to, value);
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
    case ControlKind::List:
      if (id != ControlId::Font) return ApplyChoice(dialog, to, value);
      fontAsked_ = value;
      return SetFont(dialog, value);
    case ControlKind::ColourButton:
      return SetColour(dialog, id, value);
    case ControlKind::MaterialButton:
      return FillWith(dialog, id, value);
    default:
      break;
  }
  const auto words = PickerWords(control.kind);
  if (words.empty()) return Fail(to.key + " names a control that holds no value");
  const int cell = PickerCell(control.kind, value);
  if (cell < 0) {
    return Fail(to.key + " takes " + Listed(words) + ", or an index from 0 to " + std::to_string(words.size() - 1) +
                ", not " + Quote(value));
  }
  return SetByLine(dialog, id, std::to_string(cell));
}

bool ScriptedUser::Refused(const Target& to) {
  return Fail(to.key + " cannot be set here: the control is disabled for this kind of output");
}

bool ScriptedUser::ApplyNumber(Dialog& dialog, const Target& to, const std::string& value) {
  const ControlRange range = RangeOf(dialog, to.id + kUpDownOffset);
  const std::optional<std::int64_t> number = ParseInteger(value);
  if (!number || *number < range.minimum || *number > range.maximum) {
    return Fail(to.key + " takes a whole number from " + std::to_string(range.minimum) + " to " +
                std::to_string(range.maximum) + ", not " + Quote(value));
  }
  return to.reachable ? Type(dialog, to.id, std::to_string(*number)) || Refused(to)
                      : SetByLine(dialog, to.id, std::to_string(*number));
}

bool ScriptedUser::ApplyText(Dialog& dialog, const Target& to, const std::string& value) {
  if (value.find('\0') != std::string::npos) return Fail("the text has a NUL byte; remove it");
  const std::string text = WithInnerBreaks(value);
  if (CountCharacters(text) > kMaxLongText) {
    return Fail("the text is too long: at most " + std::to_string(kMaxLongText) + " characters are allowed");
  }
  if (to.id == ControlId::Text) LimitText(dialog, to.id, static_cast<int>(kMaxLongText));
  return Type(dialog, to.id, text) || Refused(to);
}

// An item by its index or its text.
bool ScriptedUser::ApplyChoice(Dialog& dialog, const Target& to, const std::string& value) {
  const int count = ItemCount(dialog, to.id);
  const std::optional<std::int64_t> number = ParseInteger(value);
  int index = number && *number >= 0 && *number < count ? static_cast<int>(*number) : -1;
  for (int i = 0; index < 0 && i < count; ++i) {
    if (EqualsIgnoringCase(ItemText(dialog, to.id, i), value)) index = i;
  }
  if (index < 0)
    return Fail(to.key + " takes an index from 0 to " + std::to_string(count - 1) + ", not " + Quote(value));
  return to.reachable ? Choose(dialog, to.id, index) || Refused(to) : SetByLine(dialog, to.id, std::to_string(index));
}

bool ScriptedUser::FillWith(Dialog& dialog, int id, const std::string& text) {
  Material material;
  {
    const auto held = LockMaterial(dialog, id);
    if (!held) return FailRun(kOutOfMemory);
    material = *held;
  }
  material.Preview = material.Fountain.Preview = material.Tile.TileBitmap = 0;
  std::string error;
  if (!ParseMaterial(text, material, error)) return Fail(error);
  // A one-off tile comes with the text and has no library; any other is named by path and index.
  if (material.Kind == kTile && !material.Tile.TileBitmap) LoadTileOf(material.Tile);
  if (SetMaterial(dialog, id, material)) return true;
  FreeBlock(HandleOf(material.Tile.TileBitmap));
  return FailRun(kOutOfMemory);
}

bool ScriptedUser::SetColour(Dialog& dialog, int id, const std::string& text) {
  Colour colour = 0;
  const std::optional<std::int64_t> number = ParseInteger(text);
  if (number && *number >= 0 && *number <= 0xFFFFFF) {
    colour = static_cast<Colour>(*number);
  } else if (!ParseColour(text, colour)) {
    return Fail(Quote(text) + " is not an opaque colour; write #RRGGBB or a name such as red" + ColourSuggestion(text));
  }
  return SetByLine(dialog, id, std::to_string(colour));
}

bool ScriptedUser::SetFont(Dialog& dialog, const std::string& family) {
  int index = SelectText(dialog, ControlId::Font, family);
  if (index < 0) {
    if (!HasFontFamily(family))
      return Fail("there is no font " + Quote(family) + "; install it, or choose another one");
    index = AddItem(dialog, ControlId::Font, family);
  }
  return Choose(dialog, ControlId::Font, index);
}

bool ScriptedUser::SetByLine(Dialog& dialog, int id, const std::string& value) {
  const auto* family = static_cast<const ControlFamily*>(FamilyOf(dialog, id));
  if (!family) return Fail("control " + std::to_string(id) + " has no value to set");
  const std::string line = family->stem + std::to_string(id) + "=" + value;
  if (!SendToControl(dialog, id, {kMessageLoadControl, 0, PointerArgument(&line)})) {
    return Fail("control " + std::to_string(id) + " does not accept the value " + Quote(value.substr(0, 40)));
  }
  Pump(dialog);
  return true;
}

bool ScriptedUser::Finish(Dialog& dialog, const std::function<void(const PackedDib&)>& sample) {
  const std::string& document = job_.saveDocumentFile;
  if (!document.empty() && !SaveDocument(dialog, document, values_.ForDocument(dialog))) {
    const bool memory = !messages_.empty() && messages_.back() == LoadText(kTextMemoryError);
    return FailRun(memory ? kOutOfMemory
                          : "the document " + Quote(document) +
                                " cannot be written; check its folder and the free disk space");
  }
  switch (job_.action) {
    case Job::Action::None:
      return true;
    case Job::Action::Sample: {
      const PackedDib frame = RenderSample(dialog);
      if (!frame)
        return FailRun(
            "out of memory, or the effect makes no picture of this text; try another text or a smaller size");
      sample(frame);
      return true;
    }
    case Job::Action::Test:
      return Click(dialog, MainControl::Test);
    case Job::Action::Build:
      if (!IsEnabled(dialog, MainControl::Build)) return Fail("the text is empty; give the words to animate");
      return Click(dialog, MainControl::Build);
  }
  return false;
}

}  // namespace glyphmotion
