// SPDX-License-Identifier: MIT
// What a person has chosen for an effect and wants to see in the next one, too: each effect has controls of its own for
// fill, shadow, background and outline.
#pragma once

#include <string>

namespace glyphmotion {

/// The lines of `document` for the controls of the effect `from` with a role, as lines for those of `to`; a document's
/// text, or (not `whole`) the lines alone.
std::string CarriedLines(const std::string& document, int from, int to, bool whole = true);

}  // namespace glyphmotion
