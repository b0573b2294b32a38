// SPDX-License-Identifier: MIT
// What an effect's panel is: a dialog template whose rows say what they are for.
#pragma once

#include <string_view>

#include "platform/dialog.h"

namespace glyphmotion {

/// The control ids of an effect's panel by role; 0 where the panel has no such control.
struct PanelRoles {
  int fill = 0, shadow = 0, background = 0, outline = 0;
  int fillOpacity = 0, shadowOpacity = 0, softness = 0, shadowOffset = 0, shadowDirection = 0;
  int shadowEnable = 0, outlineEnable = 0;
  int material2 = 0, material3 = 0, material4 = 0, material5 = 0;  ///< more materials of effects that mix several
};

/// The part of a persistent key of a panel that follows the effect's stem: "Rotate" of "Style008Rotate".
constexpr std::string_view OptionName(const char* key) noexcept {
  constexpr std::size_t kStem = 8;
  const std::string_view whole = key ? key : "";
  return whole.size() > kStem ? whole.substr(kStem) : std::string_view();
}

struct Panel : DialogTemplate {
  PanelRoles roles;

  /// The id of the control whose key is the effect's stem and then `name`. A constant of a name that no control has
  /// does not compile.
  constexpr int Option(std::string_view name) const {
    for (const ControlTemplate& control : controls) {
      if (OptionName(control.key) == name) return control.id;
    }
    throw "no control of the panel has this option";
  }
  /// The same for one of several numbered options: "FillEnable" and 3 for "FillEnable3".
  constexpr int Option(std::string_view name, int number) const {
    for (const ControlTemplate& control : controls) {
      const std::string_view option = OptionName(control.key);
      if (option.size() == name.size() + 1 && option.starts_with(name) && option.back() == '0' + number)
        return control.id;
    }
    throw "no control of the panel has this option";
  }
};

}  // namespace glyphmotion
