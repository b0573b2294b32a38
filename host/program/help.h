// SPDX-License-Identifier: MIT
// What the program says about itself, written from the table of options.
#pragma once

#include <string>

namespace glyphmotion {

/// The text of --help.
std::string HelpText();
/// The options of one group, under its heading.
std::string HelpOfGroup(const char* group);
/// A text broken into lines of the help's width.
std::string Paragraph(const std::string& text);
/// The text of "help batch".
std::string BatchHelp();
/// "  name      text", the text broken into lines within its column.
std::string HelpEntry(const std::string& name, const std::string& text);

}  // namespace glyphmotion
