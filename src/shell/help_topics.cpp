// SPDX-License-Identifier: MIT
#include "shell/help_topics.h"

#include <algorithm>

#include "effects/effect_table.h"
#include "shell/main_dialog.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

const EffectDescriptor& ChosenEffect(const Dialog& dialog) {
  return EffectRow(std::clamp(GetSelection(dialog, ControlId::Effect), 0, kEffectCount - 1));
}

/// Converts "Event Horizon" to EVENT-HORIZON.
std::string TopicOfEffect(const EffectDescriptor& effect) {
  std::string topic = effect.name;
  for (char& c : topic) c = c == ' ' ? '-' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return topic;
}

/// The topic of an option in a panel; options that most panels have share one section.
std::string TopicOfOption(const Dialog& dialog, int id) {
  if (KindOf(dialog, id) == ControlKind::MaterialButton) return "MATERIALS";
  const EffectDescriptor& effect = ChosenEffect(dialog);
  const PanelRoles& roles = effect.panel->roles;
  for (const int common : {roles.outline, roles.fillOpacity, roles.shadowOpacity, roles.softness, roles.shadowOffset,
                           roles.shadowDirection, roles.shadowEnable, roles.outlineEnable}) {
    if (id == common) return "COMMON";
  }
  return TopicOfEffect(effect);
}

}  // namespace

std::string HelpTopicOf(const Dialog& dialog, int id) {
  constexpr int kFirstOfPanels = 100;
  if (id >= kFirstOfPanels) return TopicOfOption(dialog, id);
  switch (id) {
    case ControlId::Text:
    case ControlId::Font:
    case ControlId::Bold:
    case ControlId::Italic:
    case ControlId::Antialias:
    case ControlId::Size:
    case ControlId::Pad:
    case ControlId::CharacterSpace:
      return "TEXT";
    case ControlId::Effect:
      return TopicOfEffect(ChosenEffect(dialog));
    case MainControl::OpenSave:
      return "FILES";
    case 0:
    case MainControl::Cancel:
    case MainControl::Help:
    case MainControl::Register:
    case MainControl::About:
      return "PREFACE";
    default:
      return "OUTPUT";
  }
}

}  // namespace glyphmotion
