// SPDX-License-Identifier: MIT
// A first colour that is always in force and four more with an Enable check each.
#pragma once

#include <array>
#include <cstdint>

#include "controls/read_controls.h"

namespace glyphmotion {

/// The control ids of five colours.
struct OptionalColourControls {
  struct Optional {
    int colour, enable;
  };
  int first;
  std::array<Optional, 4> others;
};

/// The colours in force, in the order of the controls: 1 to 5 of them.
struct OptionalColours {
  std::array<Colour, 5> colours{};
  int count = 0;

  /// One of them by the next random value; the value is drawn also when there is no choice.
  Colour Draw() const noexcept;
};

OptionalColours ReadOptionalColours(const Dialog& dialog, const OptionalColourControls& controls);

}  // namespace glyphmotion
