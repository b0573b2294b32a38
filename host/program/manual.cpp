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

// In single quotes of a shell.
std::string Quoted(std::string_view text) {
  std::string out = "'";
  for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

std::string Words(const OptionRow& row) {
  std::string words = row.words;
  for (char& c : words) {
    if (c == ',') c = ' ';
  }
  return words;
}

// What a flag with words can also be: "--dither=stable".
std::vector<std::string> FlagWords(const OptionRow& row) {
  std::vector<std::string> words;
  if (row.form) return words;
  for (const std::string& word : WordsOf(row)) words.push_back(LongName(row) + "=" + word);
  return words;
}

bool TakesFile(const OptionRow& row) {
  return row.form && (!std::strcmp(row.form, "FILE") || !std::strcmp(row.form, "FOLDER"));
}

std::string BashCompletion() {
  std::string options, cases;
  for (const OptionRow& row : OptionRows()) {
    options += LongName(row) + " ";
    if (const std::string negative = NegativeName(row); !negative.empty()) options += negative + " ";
    if (!row.form) {
      for (const std::string& word : FlagWords(row)) options += word + " ";
      continue;
    }
    const std::string shortName = ShortName(row) ? std::string("|-") + ShortName(row) : "";
    const std::string reply = *row.words       ? "$(compgen -W '" + Words(row) + "' -- \"$word\")"
                              : TakesFile(row) ? "$(compgen -f -- \"$word\")"
                                               : "";
    cases += "    " + LongName(row) + shortName + ") COMPREPLY=(" + reply + "); return ;;\n";
  }
  cases.insert(0,
               "    --effect|-e) COMPREPLY=($(compgen -W \"$(glyphmotion --list effects | cut -d ' ' -f 1)\" -- "
               "\"$word\")); return ;;\n");
  return "_glyphmotion() {\n  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  case $before in\n" +
         cases + "  esac\n  COMPREPLY=($(compgen -W '" + options +
         "' -- \"$word\"))\n}\n"
         "complete -o filenames -F _glyphmotion glyphmotion\n";
}

std::string ZshCompletion() {
  std::string lines;
  for (const OptionRow& row : OptionRows()) {
    std::string help;
    for (const char* c = row.help; *c; ++c)
      help += std::strchr("[]:\\", *c) ? std::string("\\") + *c : std::string(1, *c);
    std::string value;
    if (row.form) {
      value = std::string(":") + (std::strchr(row.form, ':') ? "value" : row.form) + ":";
      if (*row.words) value += "(" + Words(row) + ")";
      if (TakesFile(row)) value += "_files";
      if (LongName(row) == "--effect") value += "($(glyphmotion --list effects | cut -d ' ' -f 1))";
    }
    lines += " \\\n  " + Quoted(LongName(row) + "[" + help + "]" + value);
    for (const std::string& word : FlagWords(row)) lines += " \\\n  " + Quoted(word + "[" + help + "]");
    if (const std::string negative = NegativeName(row); !negative.empty())
      lines += " \\\n  " + Quoted(negative + "[" + help + "]");
  }
  return "#compdef glyphmotion\n_arguments -s" + lines + " \\\n  '*:text:'\n";
}

std::string FishCompletion() {
  std::string lines = "complete -c glyphmotion -f\n";
  for (const OptionRow& row : OptionRows()) {
    std::string line = "complete -c glyphmotion -l " + LongName(row).substr(2);
    if (ShortName(row)) line += std::string(" -s ") + ShortName(row);
    if (row.form) line += TakesFile(row) ? " -r -F" : " -x";
    if (row.form && *row.words) line += " -a " + Quoted(Words(row));
    if (LongName(row) == "--effect") line += " -a '(glyphmotion --list effects | string split -f 1 \" \")'";
    lines += line + " -d " + Quoted(row.help) + "\n";
    for (const std::string& word : FlagWords(row)) lines += "complete -c glyphmotion -a " + word + "\n";
    if (const std::string negative = NegativeName(row); !negative.empty())
      lines += "complete -c glyphmotion -l " + negative.substr(2) + "\n";
  }
  return lines;
}

}  // namespace

std::string ManualPage() {
  std::string page = ".TH GLYPHMOTION 1 \"\" \"glyphmotion " GLYPHMOTION_VERSION
                     "\"\n.SH NAME\nglyphmotion \\- turns a line of text into an "
                     "animated picture\n.SH SYNOPSIS\n.B glyphmotion\n[options] [TEXT]\n.SH OPTIONS\n";
  for (const char* group : OptionGroups()) {
    page += ".SS " + Roff(group) + "\n";
    for (const OptionRow& row : OptionRows()) {
      if (std::strcmp(row.group, group) != 0) continue;
      page += ".TP\n\\fB" + (ShortName(row) ? Roff(std::string("-") + ShortName(row) + ", ") : std::string()) +
              Roff(LongName(row));
      if (const std::string negative = NegativeName(row); !negative.empty()) page += ", " + Roff(negative);
      page += std::string("\\fR") + (row.form ? " \\fI" + Roff(row.form) + "\\fR" : "") + "\n" + Roff(row.help);
      if (row.minimum < row.maximum && !*row.words)
        page += ", " + Roff(std::to_string(row.minimum)) + " to " + std::to_string(row.maximum);
      page += "\n";
    }
  }
  return page +
         ".SH EXIT STATUS\n0 done, 1 failed, 2 bad usage, 130 interrupted. An error is one line on standard error.\n"
         ".SH FILES\nGLYPHMOTION_HOME overrides the folders of settings and data.\n";
}

std::string Completion(const std::string& shell) {
  return shell == "bash"   ? BashCompletion()
         : shell == "zsh"  ? ZshCompletion()
         : shell == "fish" ? FishCompletion()
                           : "";
}

}  // namespace glyphmotion
