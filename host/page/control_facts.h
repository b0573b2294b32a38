// SPDX-License-Identifier: MIT
// A control of a dialog in memory as JSON: what a view needs to show it, and nothing of how it looks.
#pragma once

#include <string>

#include "host/page/page_message.h"
#include "platform/dialog_driver.h"

namespace glyphmotion {

/// What a template says about its controls that their state does not: the text of the label before each one, and for
/// the main dialog the section of the page and the effect whose panel it belongs to.
struct ControlPlace {
  std::string label, section;
  int effect = -1;
};
std::vector<ControlPlace> PlacesOf(const Dialog& dialog, int templateId);

/// The control number `index`, complete; a null for what no view shows (an up-down is its edit's range).
Json FactsOf(const Dialog& dialog, int index, const ControlPlace& place);

/// The shipped fountains: {name, start, end, loop, markers}.
Json ShippedFountainFacts();

/// The opposite of HexColour; -1 for what is not a colour.
std::int64_t ColourOfHex(const std::string& text);

}  // namespace glyphmotion
