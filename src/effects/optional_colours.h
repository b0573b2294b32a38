// SPDX-License-Identifier: MIT
// A first colour that is always in force and four more with an Enable check each.
#pragma once

#include <array>
#include <cstdint>

#include "controls/read_controls.h"
#include "resources/panel.h"

namespace glyphmotion {

/// The control ids of five colours.
struct OptionalColourControls {
  struct Optional {
    int colour, enable;
  };
  int first;
  std::array<Optional, 4> others;
};

/// Of a panel whose keys are numbered from 1: "BeamColor" 1 to 5 and "BeamEnable" 2 to 5.
constexpr OptionalColourControls OptionalColoursOf(const Panel& panel, std::string_view colour,
                                                   std::string_view enable) {
  OptionalColourControls controls{panel.Option(colour, 1), {}};
  for (int i = 0; i < 4; ++i) {
    controls.others[static_cast<std::size_t>(i)] = {panel.Option(colour, 2 + i), panel.Option(enable, 2 + i)};
  }
  return controls;
}

/// The colours in force, in the order of the controls: 1 to 5 of them.
struct OptionalColours {
  std::array<Colour, 5> colours{};
  int count = 0;

  /// One of them by the next random value; the value is drawn also when there is no choice.
  Colour Draw() const noexcept;
};

OptionalColours ReadOptionalColours(const Dialog& dialog, const OptionalColourControls& controls);

}  // namespace glyphmotion
