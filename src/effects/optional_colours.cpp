// SPDX-License-Identifier: MIT
#include "effects/optional_colours.h"

#include "platform/random.h"

namespace glyphmotion {

Colour OptionalColours::Draw() const noexcept {
  const int value = NextRandom();
  return count ? colours[static_cast<std::size_t>(value % count)] : 0;
}

OptionalColours ReadOptionalColours(const Dialog& dialog, const OptionalColourControls& controls) {
  OptionalColours list;
  const auto append = [&](int control) {
    list.colours[static_cast<std::size_t>(list.count++)] = ReadColour(dialog, control);
  };
  append(controls.first);
  for (const auto& other : controls.others) {
    if (ReadCheck(dialog, other.enable)) append(other.colour);
  }
  return list;
}

}  // namespace glyphmotion
