// SPDX-License-Identifier: MIT
// Colours as people write them: #RGB, #RRGGBB, both with an alpha at the end, and the names of CSS in any case.
#pragma once

#include <string>

#include "image/colour.h"

namespace glyphmotion {

/// Any of the forms. `alpha` is 0 (clear) to 255 (opaque), 255 where the text has none. False, with `colour` as it was,
/// for anything else.
bool ParseColourAndAlpha(const std::string& text, Colour& colour, int& alpha) noexcept;

/// The same for places that have no opacity: what is not opaque is refused.
bool ParseColour(const std::string& text, Colour& colour) noexcept;

/// "#rrggbb"
std::string HexColour(Colour colour);

/// For a text that is not a colour: "; did you mean 'crimson'?", or nothing. With `orNone`, 'none' is a name, too.
std::string ColourSuggestion(const std::string& text, bool orNone = false);

}  // namespace glyphmotion
