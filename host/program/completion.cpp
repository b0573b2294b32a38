// SPDX-License-Identifier: MIT
#include "host/program/completion.h"

#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "host/options/option_table.h"

namespace glyphmotion {
namespace {

// In single quotes of a shell.
std::string Quoted(std::string_view text) {
  std::string out = "'";
  for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

std::string Spaced(const char* words) {
  std::string text = words;
  for (char& c : text) {
    if (c == ',') c = ' ';
  }
  return text;
}

bool TakesFile(const OptionRow& row) {
  return row.form && (!std::strncmp(row.form, "FILE", 4) || !std::strcmp(row.form, "FOLDER"));
}

// What lists the values of an option or the topics of "help", one a line, for command substitution; empty when nothing
// does. A name ends where two blanks begin.
std::string Lister(const std::string& name) {
  const std::string list = name == "--effect" || name == "help" ? "effects"
                           : name == "--palette"                ? "palettes"
                           : name == "--look"                   ? "looks"
                           : name == "--font"                   ? "fonts"
                                                                : "";
  return list.empty() ? list : "glyphmotion --list " + list + " | sed \"s/  .*//\" | uniq";
}

// A look is a name or a file.
bool MayBeFile(const OptionRow& row) { return row.form && std::strstr(row.form, "|FILE"); }

// The names of all options, and of flags with each of their words.
std::string NamesOf(std::span<const OptionRow> rows) {
  std::string names;
  for (const OptionRow& row : rows) {
    names += LongName(row) + " ";
    if (const std::string negative = NegativeName(row); !negative.empty()) names += negative + " ";
  }
  return names;
}

// --- bash. "--option=value" arrives as three words, because "=" breaks words.

std::string BashCases(std::span<const OptionRow> rows) {
  std::string cases;
  for (const OptionRow& row : rows) {
    const std::string name = LongName(row), lister = Lister(name);
    if (!row.form && !*row.words) continue;
    std::string reply;
    if (*row.words) reply += "$(compgen -W '" + Spaced(row.words) + "' -- \"$word\")";
    if (!lister.empty()) reply = "$(compgen -W \"$(" + lister + ")\" -- \"$word\")";
    if (MayBeFile(row)) reply += " $(compgen -f -- \"$word\")";
    if (TakesFile(row)) reply = "$(compgen -f -- \"$word\")";
    const std::string names = !row.form ? name + "=" : name + "|" + name + "=";
    // A listed name may have blanks, which readline escapes.
    const std::string lines = lister.empty() ? "" : "local IFS=$'\\n'; word=${word//\\\\/}; ";
    cases += "    " + names + (ShortName(row) ? std::string("|-") + ShortName(row) : "") + ") " + lines +
             "COMPREPLY=(" + reply + "); return ;;\n";
  }
  return cases;
}

std::string BashFunction(const std::string& name, std::span<const OptionRow> rows, const std::string& rest) {
  return name +
         "() {\n  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
         "  if [[ $word == = ]]; then word= before=$before=\n"
         "  elif [[ $before == = ]]; then before=${COMP_WORDS[COMP_CWORD-2]}=; fi\n"
         "  case $before in\n" +
         BashCases(rows) + "  esac\n" + rest + "  COMPREPLY=($(compgen -W '" + NamesOf(rows) +
         "' -- \"$word\") \"${COMPREPLY[@]}\")\n}\n";
}

std::string BashCompletion() {
  std::string commands, cases;
  for (const CommandRow& command : CommandRows()) {
    const std::string name = command.name, lister = Lister(name);
    commands += name + " ";
    std::string reply = "$(compgen -W '" + Spaced(command.words) + "' -- \"$word\")";
    if (!lister.empty()) reply += " $(compgen -W \"$(" + lister + ")\" -- \"$word\")";
    if (command.takesFile) reply += " $(compgen -f -- \"$word\")";
    cases += "      " + name + ") " + (name == "batch" ? "_glyphmotion_batch" : "COMPREPLY=(" + reply + ")") +
             "; return ;;\n";
  }
  return BashFunction("_glyphmotion_batch", BatchRows(), "  COMPREPLY=($(compgen -f -- \"$word\"))\n") +
         BashFunction("_glyphmotion", OptionRows(),
                      "  if ((COMP_CWORD > 1)); then\n    case ${COMP_WORDS[1]} in\n" + cases +
                          "    esac\n  else\n    COMPREPLY=($(compgen -W '" + commands + "' -- \"$word\"))\n  fi\n") +
         "complete -o filenames -F _glyphmotion glyphmotion\n";
}

// --- zsh

std::string ZshText(const char* text) {
  std::string out;
  for (; *text; ++text) out += std::strchr("[]:\\", *text) ? std::string("\\") + *text : std::string(1, *text);
  return out;
}

std::string ZshArguments(std::span<const OptionRow> rows) {
  std::string arguments;
  const auto add = [&](const std::string& argument) { arguments += " \\\n    " + argument; };
  for (const OptionRow& row : rows) {
    const std::string name = LongName(row), negative = NegativeName(row), lister = Lister(name);
    const std::string help = "[" + ZshText(row.help) + "]";
    std::string value;
    if (row.form || *row.words) {
      value = ":" + ZshText(row.form ? row.form : "value") + ":";
      if (*row.words) value += "(" + Spaced(row.words) + ")";
      if (!lister.empty()) value += "{compadd -- ${(f)\"$(" + lister + ")\"}" + (MayBeFile(row) ? "; _files}" : "}");
      if (TakesFile(row)) value += "_files";
    }
    const std::string repeated = row.repeats ? "*" : "";
    if (!row.form && *row.words) add(Quoted(name + "=-" + help + ":" + value));
    if (ShortName(row)) {
      const std::string letter = std::string("-") + ShortName(row);
      add(Quoted("(" + letter + " " + name + ")") + "{" + letter + (row.form ? "+," : ",") + name +
          (row.form ? "=}" : "}") + Quoted(help + (row.form ? value : "")));
    } else if (row.form || !*row.words) {
      add(Quoted(repeated + name + (row.form ? "=" : "") + help + (row.form ? value : "")));
    }
    if (!negative.empty()) add(Quoted(negative + help));
  }
  return arguments;
}

std::string ZshCompletion() {
  std::string commands, cases;
  for (const CommandRow& command : CommandRows()) {
    const std::string name = command.name, lister = Lister(name);
    commands += " " + Quoted(name + ":" + ZshText(command.help));
    std::string action = *command.words ? "compadd -- " + Spaced(command.words) : std::string();
    if (!lister.empty()) action += " $(" + lister + ")";
    if (command.takesFile) action += action.empty() ? "_files" : "; _files";
    if (name == "batch")
      action = "shift words; ((CURRENT--)); _arguments" + ZshArguments(BatchRows()) + " \\\n    '1:jobs:_files'";
    if (!action.empty()) cases += "  " + name + ") " + action + "; return ;;\n";
  }
  return "#compdef glyphmotion\n_glyphmotion_first() {\n  local -a commands=(" + commands.substr(1) +
         ")\n  _describe command commands\n}\nif ((CURRENT > 2)); then\n  case $words[2] in\n" + cases +
         "  esac\nfi\n_arguments" + ZshArguments(OptionRows()) + " \\\n    '1:text:_glyphmotion_first'\n";
}

// --- fish

std::string FishLines(std::span<const OptionRow> rows, const std::string& condition) {
  std::string lines;
  const std::string begin = "complete -c glyphmotion -n " + Quoted(condition);
  for (const OptionRow& row : rows) {
    const std::string name = LongName(row), lister = Lister(name);
    std::string line = begin + " -l " + name.substr(2);
    if (ShortName(row)) line += std::string(" -s ") + ShortName(row);
    if (row.form) line += TakesFile(row) || MayBeFile(row) ? " -r -F" : " -x";
    if (row.form && *row.words) line += " -a " + Quoted(Spaced(row.words));
    if (!lister.empty()) line += " -a " + Quoted("(" + lister + ")");
    lines += line + " -d " + Quoted(row.help) + "\n";
    for (std::string_view words = row.form ? "" : row.words; !words.empty();) {
      const std::size_t comma = std::min(words.find(','), words.size());
      lines += begin + " -a " + name + "=" + std::string(words.substr(0, comma)) + "\n";
      words.remove_prefix(std::min(comma + 1, words.size()));
    }
    if (const std::string negative = NegativeName(row); !negative.empty())
      lines += begin + " -l " + negative.substr(2) + "\n";
  }
  return lines;
}

std::string FishCompletion() {
  std::string lines = "complete -c glyphmotion -f\n", names;
  for (const CommandRow& command : CommandRows()) {
    const std::string name = command.name, lister = Lister(name), seen = Quoted("__fish_seen_subcommand_from " + name);
    names += " " + name;
    lines += "complete -c glyphmotion -n __fish_use_subcommand -a " + name + " -d " + Quoted(command.help) + "\n";
    if (*command.words) lines += "complete -c glyphmotion -n " + seen + " -a " + Quoted(Spaced(command.words)) + "\n";
    if (!lister.empty()) lines += "complete -c glyphmotion -n " + seen + " -a " + Quoted("(" + lister + ")") + "\n";
    if (command.takesFile) lines += "complete -c glyphmotion -n " + seen + " -F\n";
  }
  return lines + FishLines(BatchRows(), "__fish_seen_subcommand_from batch") +
         FishLines(OptionRows(), "not __fish_seen_subcommand_from" + names);
}

}  // namespace

std::string Completion(const std::string& shell) {
  return shell == "bash"   ? BashCompletion()
         : shell == "zsh"  ? ZshCompletion()
         : shell == "fish" ? FishCompletion()
                           : "";
}

}  // namespace glyphmotion
