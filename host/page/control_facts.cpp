// SPDX-License-Identifier: MIT
#include "host/page/control_facts.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>
#include <utility>

#include "controls/direction_pickers.h"
#include "controls/fountain_control.h"
#include "controls/gradient_editor.h"
#include "controls/material_control.h"
#include "controls/read_controls.h"
#include "effects/effect_table.h"
#include "materials/colour_text.h"
#include "materials/gradient_text.h"
#include "materials/material_text.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

const char* NameOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::Paragraph:
      return "paragraph";
    case ControlKind::Button:
    case ControlKind::DefaultButton:
      return "button";
    case ControlKind::Check:
      return "check";
    case ControlKind::Radio:
      return "radio";
    case ControlKind::Edit:
      return "edit";
    case ControlKind::NumberEdit:
      return "number";
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
      return "combo";
    case ControlKind::List:
      return "list";
    case ControlKind::PictureList:
    case ControlKind::PictureGrid:
      return "pictures";
    case ControlKind::Trackbar:
      return "track";
    case ControlKind::ColourButton:
      return "colour";
    case ControlKind::MaterialButton:
      return "material";
    case ControlKind::FountainButton:
      return "fountain";
    case ControlKind::ShadowDirection:
      return "shadow-direction";
    case ControlKind::ScrollFour:
      return "scroll-four";
    case ControlKind::ScrollTwo:
      return "scroll-two";
    case ControlKind::ScrollAxis:
      return "scroll-axis";
    case ControlKind::OwnerDrawn:
    case ControlKind::Drawn:
      return "drawn";
    default:
      return "";
  }
}

std::string Plain(std::string text) {
  std::erase(text, '&');
  while (!text.empty() && (text.back() == ':' || text.back() == ' ')) text.pop_back();
  return text;
}

// --- Sections of the main dialog ---

using Sections = std::unordered_map<int, ControlPlace>;

void AddPanel(Sections& sections, int effect) {
  const EffectDescriptor& row = EffectRow(effect);
  for (const ControlTemplate& control : row.panel->controls) sections[control.id] = {{}, "effect", effect};
  const PanelRoles& roles = row.panel->roles;
  const struct {
    int id;
    const char* section;
  } rows[] = {{roles.fill, "fill"},
              {roles.fillOpacity, "fill"},
              {roles.shadow, "shadow"},
              {roles.shadowOpacity, "shadow"},
              {roles.softness, "shadow"},
              {roles.shadowOffset, "shadow"},
              {roles.shadowDirection, "shadow"},
              {roles.shadowEnable, "shadow"},
              {roles.outline, "outline"},
              {roles.outlineEnable, "outline"},
              {roles.background, "background"}};
  for (const auto& each : rows) {
    if (each.id) sections[each.id].section = each.section;
  }
}

Sections MakeSections() {
  Sections sections;
  for (const ControlTemplate& control : kMainDialogTemplate.controls) {
    const bool button = control.kind == ControlKind::Button || control.kind == ControlKind::DefaultButton ||
                        control.kind == ControlKind::OwnerDrawn;
    if (control.id > 0 && !button) sections[control.id].section = "output";
  }
  for (const int id : {ControlId::Font, ControlId::Size, ControlId::Bold, ControlId::Italic, ControlId::Antialias,
                       ControlId::CharacterSpace, ControlId::Pad}) {
    sections[id].section = "letters";
  }
  for (const int id : {ControlId::Delay, ControlId::Pause, ControlId::Animated}) sections[id].section = "timing";
  sections[ControlId::Text].section = "text";
  sections[ControlId::Effect].section = "";
  for (int i = 0; i < kEffectCount; ++i) AddPanel(sections, i);
  return sections;
}

// --- What the kinds hold ---

Json ItemsOf(const Dialog& dialog, int id) {
  Json items = Json::array();
  for (int i = 0; i < ItemCount(dialog, id); ++i) items.push_back(ItemText(dialog, id, i));
  return items;
}

Json MarkersOf(const FountainSpec& fountain) {
  Json markers = Json::array();
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(+fountain.MarkerCount, 64); ++i) {
    const std::uint32_t marker = fountain.Markers[i];  // a packed field, which no reference may be bound to
    markers.push_back({marker >> 24, HexColour(marker)});
  }
  return markers;
}

Json FactsOfFountain(const FountainSpec& fountain) {
  return {{"start", HexColour(fountain.StartColour)},
          {"end", HexColour(fountain.EndColour)},
          {"loop", (fountain.Flags & kFountainLooped) != 0},
          {"markers", MarkersOf(fountain)}};
}

void AddFountain(const Dialog& dialog, int id, Json& facts) {
  if (const auto fountain = LockFountain(dialog, id)) facts["fountain"] = FactsOfFountain(*fountain);
}

void AddMaterial(const Dialog& dialog, int id, Json& facts) {
  const auto material = LockMaterial(dialog, id);
  if (!material) return;
  facts["material"] = {{"kind", material->Kind},
                       {"colour", HexColour(material->Colour)},
                       {"average", HexColour(material->AverageColour)}};
}

// The four shape buttons of the gradient editor show which one is pressed by their faces alone.
bool IsPressedShape(const Dialog& dialog, int id) {
  const LockedBlock<GradientBlock> block(HandleOf(GetData(dialog, GradientControl::Preview)));
  return block && TypeButtonOf(block->gradient) == id;
}

// The third number of "minimum,maximum,default".
int DefaultOf(const std::string& caption, int fallback) {
  const std::size_t comma = caption.rfind(',');
  return comma == std::string::npos ? fallback : std::atoi(caption.c_str() + comma + 1);
}

void AddRange(const Dialog& dialog, const ControlView& view, Json& facts) {
  const int upDown = view.id + kUpDownOffset;
  const bool hasUpDown = view.kind == ControlKind::NumberEdit && HasControl(dialog, upDown);
  const ControlRange range = RangeOf(dialog, hasUpDown ? upDown : view.id);
  const int initial = hasUpDown ? DefaultOf(GetText(dialog, upDown), range.minimum) : range.minimum;
  facts["range"] = {range.minimum, range.maximum, initial};
}

void AddValue(const Dialog& dialog, const ControlView& view, Json& facts) {
  const int id = view.id;
  switch (view.kind) {
    case ControlKind::NumberEdit:
    case ControlKind::Trackbar:
      facts["text"] = view.text;
      return AddRange(dialog, view, facts);
    case ControlKind::Edit:
      facts["text"] = view.text;
      facts["limit"] = view.limit;
      return;
    case ControlKind::Check:
    case ControlKind::Radio:
      facts["check"] = view.check;
      return;
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
    case ControlKind::List:
    case ControlKind::PictureList:
    case ControlKind::PictureGrid:
      facts["items"] = ItemsOf(dialog, id);
      facts["selection"] = view.selection;
      return;
    case ControlKind::ColourButton:
      facts["colour"] = HexColour(static_cast<std::uint32_t>(GetNumber(dialog, id, false)));
      return;
    case ControlKind::MaterialButton:
      return AddMaterial(dialog, id, facts);
    case ControlKind::FountainButton:
      return AddFountain(dialog, id, facts);
    case ControlKind::Paragraph:
      facts["text"] = view.text;
      return;
    default:
      if (IsPicker(view.kind)) facts["index"] = ReadDirection(dialog, id);
  }
}

}  // namespace

Json ShippedFountainFacts() {
  Json list = Json::array();
  for (const std::string& name : FountainNames()) {
    Material material;
    DefaultMaterial(material, 0);
    std::string error;
    if (!ParseMaterial("fountain:" + name, material, error)) continue;
    Json facts = FactsOfFountain(material.Fountain);
    facts["name"] = name;
    list.push_back(std::move(facts));
  }
  return list;
}

std::int64_t ColourOfHex(const std::string& text) {
  const bool digits =
      text.size() == 7 && text[0] == '#' && text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
  if (!digits) return -1;
  const unsigned long value = std::strtoul(text.c_str() + 1, nullptr, 16);
  return static_cast<std::int64_t>((value & 0xFF) << 16 | (value & 0xFF00) | value >> 16);
}

std::vector<ControlPlace> PlacesOf(const Dialog& dialog, int templateId) {
  static const Sections sections = MakeSections();
  std::vector<ControlPlace> places;
  std::string label;
  for (int i = 0; i < ControlCount(dialog); ++i) {
    const ControlView view = ControlAt(dialog, i);
    ControlPlace place;
    const auto known = sections.find(view.id);
    if (templateId == kMainDialogTemplate.id && known != sections.end()) place = known->second;
    if (view.kind == ControlKind::Label) {
      label = Plain(view.text);
    } else if (view.kind != ControlKind::UpDown) {
      const bool ownCaption = view.kind == ControlKind::Check || view.kind == ControlKind::Radio ||
                              view.kind == ControlKind::Button || view.kind == ControlKind::DefaultButton ||
                              view.kind == ControlKind::Drawn || view.kind == ControlKind::Group;
      place.label = ownCaption && !view.text.empty() ? Plain(view.text) : std::exchange(label, {});
    }
    places.push_back(std::move(place));
  }
  return places;
}

Json FactsOf(const Dialog& dialog, int index, const ControlPlace& place) {
  const ControlView view = ControlAt(dialog, index);
  const char* kind = NameOf(view.kind);
  if (!*kind || view.id == 0) return nullptr;
  Json facts = {
      {"id", view.id},
      {"kind", kind},
      {"label", place.label},
      {"visible", view.visible},
      {"enabled", view.enabled},
      {"place",
       {view.place.left, view.place.top, view.place.right - view.place.left, view.place.bottom - view.place.top}}};
  if (!place.section.empty()) facts["section"] = place.section;
  if (place.effect >= 0) facts["effect"] = place.effect;
  if (view.kind == ControlKind::DefaultButton) facts["default"] = true;
  AddValue(dialog, view, facts);
  if (view.kind == ControlKind::Drawn && IsPressedShape(dialog, view.id)) facts["pressed"] = true;
  return facts;
}

}  // namespace glyphmotion
