// SPDX-License-Identifier: MIT
// glyphmotion help TOPIC: an effect with its options, the materials, the options for hosts.
#pragma once

#include <optional>
#include <string>

#include "host/options/arguments.h"
#include "host/options/option_table.h"

namespace glyphmotion {

/// The text of a topic; nothing for none of that name.
std::optional<std::string> HelpTopic(const std::string& topic, const Catalogue& catalogue);
/// The sentence for a topic that is not there.
std::string NoSuchTopic(const std::string& topic, const Catalogue& catalogue);

}  // namespace glyphmotion
