// SPDX-License-Identifier: MIT
// The lists behind --list.
#include <glyphmotion/render.h>

#include "controls/variables.h"
#include "effects/effect_table.h"
#include "host/render/picker_words.h"
#include "image/fixed_palettes.h"
#include "platform/font_files.h"
#include "platform/text_engine.h"
#include "resources/strings.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

const char* NameOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::NumberEdit:
      return "number";
    case ControlKind::Check:
      return "check";
    case ControlKind::Edit:
      return "text";
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
    case ControlKind::List:
      return "list";
    case ControlKind::ColourButton:
      return "colour";
    case ControlKind::MaterialButton:
      return "material";
    case ControlKind::ShadowDirection:
      return "direction 0-7";
    case ControlKind::ScrollFour:
      return "direction 0-3";
    case ControlKind::ScrollTwo:
      return "direction 0-1";
    case ControlKind::ScrollAxis:
      return "axis 0-1";
    case ControlKind::Button:
    case ControlKind::DefaultButton:
      return "button";
    default:
      return "";
  }
}

const char* NameOfFlags(std::uint32_t flags) {
  if (flags & kSettingText) return "text";
  return flags & kSettingSwitch ? "switch" : "number";
}

std::string WithoutMnemonic(std::string text) {
  std::erase(text, '&');
  return text;
}

void ListTemplate(const DialogTemplate& dialogTemplate, const char* panel, std::vector<ControlInfo>& list) {
  std::string label;
  for (std::size_t i = 0; i < dialogTemplate.controls.size(); ++i) {
    const ControlTemplate& control = dialogTemplate.controls[i];
    if (control.kind == ControlKind::Label) label = WithoutMnemonic(control.caption);
    const char* kind = NameOf(control.kind);
    if (!*kind || control.id < 1) continue;
    ControlInfo info;
    info.id = control.id;
    info.kind = kind;
    const bool captioned = control.kind == ControlKind::Check || control.kind == ControlKind::Button ||
                           control.kind == ControlKind::DefaultButton;
    info.caption = captioned ? WithoutMnemonic(control.caption) : label;
    if (control.kind == ControlKind::NumberEdit && i + 1 < dialogTemplate.controls.size()) {
      info.range = dialogTemplate.controls[i + 1].caption;
    } else if (control.kind == ControlKind::Combo) {
      info.range = control.caption;
    }
    info.key = control.key ? control.key : "";
    info.panel = panel;
    info.words = PickerWords(control.kind);
    list.push_back(std::move(info));
  }
}

}  // namespace

std::vector<std::string> PickerWords(ControlKind kind) {
  switch (kind) {
    case ControlKind::ShadowDirection:
      return {"up-left", "up", "up-right", "right", "left", "down-left", "down", "down-right"};
    case ControlKind::ScrollFour:
      return {"up", "right", "left", "down"};
    case ControlKind::ScrollTwo:
      return {"left", "right"};
    case ControlKind::ScrollAxis:
      return {"horizontal", "vertical"};
    default:
      return {};
  }
}

std::vector<std::string> EffectNames() {
  std::vector<std::string> names;
  for (const EffectDescriptor* effect : Effects()) names.emplace_back(effect->name);
  return names;
}

std::vector<std::string> PaletteNames() {
  std::vector<std::string> names;
  for (int i = 0; i < kFixedPaletteCount; ++i) names.push_back(LoadText(kTextFirstPalette + i));
  return names;
}

std::vector<std::string> FontNames() { return FontFamilies(); }

std::vector<FontInfo> Fonts() {
  std::vector<FontInfo> fonts;
  for (FontFaceInfo& face : FontFaces()) {
    FontInfo font{std::move(face.family), std::move(face.style), std::move(face.file), face.index, {}};
    for (const FontAxis& axis : face.axes) font.axes.push_back({axis.tag, axis.minimum, axis.standard, axis.maximum});
    fonts.push_back(std::move(font));
  }
  return fonts;
}

std::vector<KeyInfo> Keys() {
  std::vector<KeyInfo> keys;
  for (const SettingsRow& row : SettingsTable()) {
    const ControlTemplate* control = FindControlOfKey(row.key);
    const bool text = row.flags & kSettingText;
    keys.push_back({row.key, NameOfFlags(row.flags), text ? row.defaultText : std::to_string(row.defaultNumber),
                    control ? control->id : 0});
  }
  return keys;
}

std::vector<ControlInfo> Controls() {
  std::vector<ControlInfo> list;
  ListTemplate(kMainDialogTemplate, "", list);
  for (const EffectDescriptor* effect : Effects()) ListTemplate(*effect->panel, effect->name, list);
  return list;
}

}  // namespace glyphmotion
