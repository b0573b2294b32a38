// SPDX-License-Identifier: MIT
#include "shell/help_topics.h"

#include "effects/effect_table.h"
#include "shell/effect_panels.h"
#include "shell/main_controls.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

/// The topic of the chosen effect: EVENT-HORIZON for "Event Horizon".
std::string TopicOfEffect(const Dialog& dialog) {
  std::string topic = EffectRow(ChosenEffect(dialog)).name;
  for (char& c : topic) c = c == ' ' ? '-' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return topic;
}

/// The topic of an option in a panel; options that most panels have share one section.
std::string TopicOfOption(const Dialog& dialog, int id) {
  if (KindOf(dialog, id) == ControlKind::MaterialButton) return "MATERIALS";
  const PanelRoles& roles = EffectRow(ChosenEffect(dialog)).panel->roles;
  for (const int common : {roles.outline, roles.fillOpacity, roles.shadowOpacity, roles.softness, roles.shadowOffset,
                           roles.shadowDirection, roles.shadowEnable, roles.outlineEnable}) {
    if (id == common) return "COMMON";
  }
  return TopicOfEffect(dialog);
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
      return TopicOfEffect(dialog);
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
