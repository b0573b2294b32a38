// SPDX-License-Identifier: MIT
#include "host/program/help.h"

#include <cstring>

#include "host/options/option_table.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kColumn = 30, kWidth = 110;

constexpr const char* kExamples =
    "Examples:\n"
    "  glyphmotion \"Hello\" -o hello.gif\n"
    "  glyphmotion \"Hello\" -e vortex -o hello.gif\n"
    "  glyphmotion \"Grand opening\" -f \"Liberation Serif\" -s 72 --fill \"#cc2200\" -o sign.webp\n"
    "  glyphmotion \"Fog\" --alpha -o fog.png\n"
    "  glyphmotion swatch \"fountain:Sunrise\" -o sunrise.png        a material alone\n";

// The words of a text in lines that begin at a column, where the first already is.
std::string Broken(const std::string& text, std::size_t left) {
  std::string out;
  std::size_t column = left;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    if (column > left && column + 1 + (end - begin) > kWidth) {
      out += "\n" + std::string(left, ' ');
      column = left;
    } else if (column > left) {
      out += ' ';
      ++column;
    }
    out += text.substr(begin, end - begin);
    column += end - begin;
    begin = end + 1;
  }
  return out + "\n";
}

// "-s, --size N"
std::string NamesOf(const OptionRow& row) {
  std::string names = ShortName(row) ? std::string("-") + ShortName(row) + ", " : "    ";
  names += LongName(row);
  if (const std::string negative = NegativeName(row); !negative.empty()) names += ", " + negative;
  if (!row.form && *row.words) return names + "[=HOW]";
  return row.form ? names + " " + row.form : names;
}

std::string GroupText(const char* group, std::span<const OptionRow> rows = OptionRows()) {
  std::string text = std::string(group) + ":\n";
  for (const OptionRow& row : rows) {
    if (std::strcmp(row.group, group) != 0) continue;
    std::string help = row.help;
    if (row.minimum < row.maximum && !*row.words)
      help += ", " + std::to_string(row.minimum) + " to " + std::to_string(row.maximum);
    text += HelpEntry(NamesOf(row), help);
  }
  return text;
}

}  // namespace

std::string Paragraph(const std::string& text) { return Broken(text, 0); }

std::string HelpEntry(const std::string& name, const std::string& text) {
  std::string out = "  " + name;
  out += out.size() + 2 > kColumn ? "\n" + std::string(kColumn, ' ') : std::string(kColumn - out.size(), ' ');
  return out + Broken(text, kColumn);
}

std::string HelpOfGroup(const char* group) { return GroupText(group); }

std::string BatchHelp() {
  return "Makes many animations at once.\n\nUsage: glyphmotion batch [options] JOBS.jsonl\n\n"
         "Each line of the file (- for standard input) is one job, an object whose keys are \"text\" and the long\n"
         "options without their dashes:\n"
         "  {\"text\": \"Hi\", \"output\": \"a.gif\", \"effect\": \"vortex\", \"size\": 60, \"bold\": true, \"set\": "
         "{\"@frames\": "
         "20}}\n\n"
         "Results are printed as they come, with the numbers of their lines. A wrong line does not stop the others; "
         "the\n"
         "exit code is then 1. After an interruption, --resume makes what is missing.\n\n" +
         GroupText(kBatchGroup, BatchRows());
}

std::string HelpText() {
  std::string text =
      "Turns a line of text into an animated picture.\n\nUsage: glyphmotion [options] [TEXT]\n"
      "       glyphmotion edit [FILE.GM4]                    the page in the browser\n"
      "       glyphmotion swatch MATERIAL -o FILE.png        a fill by itself\n"
      "       glyphmotion gallery FOLDER [--text T] [--look L]   effects, looks and fills on one page\n"
      "       glyphmotion batch JOBS.jsonl                   many pictures at once, see help batch\n"
      "       glyphmotion help EFFECT|materials|batch|hosts  an effect and its options, fills, jobs, hosts\n"
      "       glyphmotion man | completion bash|zsh|fish     the manual page, a script for the shell\n\n";
  for (const char* group : OptionGroups()) {
    if (std::strcmp(group, kHostGroup) != 0) text += GroupText(group) + "\n";
  }
  return text + kExamples;
}

}  // namespace glyphmotion
