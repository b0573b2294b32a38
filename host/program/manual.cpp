// SPDX-License-Identifier: MIT
#include "host/program/manual.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "glyphmotion/version.h"
#include "host/options/option_table.h"

namespace glyphmotion {
namespace {

// Text of a manual page: what man(7) would take for markup is escaped.
std::string Roff(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else if (c == '\'' || (c == '.' && out.empty())) {
      out += c == '\'' ? "\\(aq" : "\\&.";
    } else {
      out += c;
    }
  }
  return out;
}

std::string Entry(const OptionRow& row) {
  std::string entry = ".TP\n\\fB" + (ShortName(row) ? Roff(std::string("-") + ShortName(row) + ", ") : std::string()) +
                      Roff(LongName(row));
  if (const std::string negative = NegativeName(row); !negative.empty()) entry += ", " + Roff(negative);
  entry += std::string("\\fR") + (row.form ? " \\fI" + Roff(row.form) + "\\fR" : "") + "\n" + Roff(row.help);
  if (row.minimum < row.maximum && !*row.words)
    entry += ", " + Roff(std::to_string(row.minimum)) + " to " + std::to_string(row.maximum);
  return entry + "\n";
}

}  // namespace

std::string ManualPage() {
  std::string page = ".TH GLYPHMOTION 1 \"\" \"glyphmotion " GLYPHMOTION_VERSION
                     "\"\n.SH NAME\nglyphmotion \\- turns a line of text into an "
                     "animated picture\n.SH SYNOPSIS\n.B glyphmotion\n[options] [TEXT]\n";
  for (const CommandRow& command : CommandRows())
    page += std::string(".br\n.B glyphmotion ") + command.name + "\n" + Roff(command.form) + "\n";
  page += ".SH COMMANDS\n";
  for (const CommandRow& command : CommandRows())
    page += std::string(".TP\n\\fB") + command.name + "\\fR\n" + Roff(command.help) + "\n";
  page += ".SH OPTIONS\n";
  for (const char* group : OptionGroups()) {
    page += ".SS " + Roff(group) + "\n";
    for (const OptionRow& row : OptionRows()) {
      if (std::strcmp(row.group, group) == 0) page += Entry(row);
    }
  }
  page += ".SH OPTIONS OF BATCH\n";
  for (const OptionRow& row : BatchRows()) page += Entry(row);
  return page +
         ".SH EXIT STATUS\n0 done, 1 failed, 2 bad usage, 130 interrupted. An error is one line on standard error.\n"
         ".SH FILES\nGLYPHMOTION_HOME overrides the folders of settings and data.\n";
}

}  // namespace glyphmotion
