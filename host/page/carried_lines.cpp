// SPDX-License-Identifier: MIT
#include "host/page/carried_lines.h"

#include <string_view>

#include "effects/effect_table.h"

namespace glyphmotion {
namespace {

constexpr int PanelRoles::*kCarried[] = {
    &PanelRoles::fill,         &PanelRoles::shadow,       &PanelRoles::background,
    &PanelRoles::outline,      &PanelRoles::fillOpacity,  &PanelRoles::shadowOpacity,
    &PanelRoles::softness,     &PanelRoles::shadowOffset, &PanelRoles::shadowDirection,
    &PanelRoles::shadowEnable, &PanelRoles::outlineEnable};
constexpr std::size_t kStem = 6;

std::string_view FirstLine(std::string_view text) { return text.substr(0, text.find('\n')); }

}  // namespace

std::string CarriedLines(const std::string& document, int from, int to, bool whole) {
  const PanelRoles &old = EffectRow(from).panel->roles, &now = EffectRow(to).panel->roles;
  std::string text = whole ? std::string(FirstLine(document)) + "\n" : std::string();
  for (const auto role : kCarried) {
    if (!(old.*role) || !(now.*role)) continue;
    const std::string name = std::to_string(old.*role) + "=";
    for (std::size_t at = 0; at < document.size();) {
      const std::string_view line = FirstLine(std::string_view(document).substr(at));
      if (line.size() > kStem && line[0] != ';' && line.substr(kStem).starts_with(name)) {
        text.append(line.substr(0, kStem))
            .append(std::to_string(now.*role))
            .append(line.substr(kStem + name.size() - 1));
        text += '\n';
        break;
      }
      at += line.size() + 1;
    }
  }
  return text;
}

}  // namespace glyphmotion
