// SPDX-License-Identifier: MIT
// The library as a module: the C API, and the option table for what is generated from it.
#include <emscripten/emscripten.h>

#include "glyphmotion/glyphmotion.h"
#include "glyphmotion/render.h"
#include "host/options/library_options.h"
#include "host/options/names.h"
#include "host/options/option_table.h"

/// A line for each option of a job but the text: name, help, least and greatest number, words, "flag", "repeats" or
/// "value", with tabs between. It stays.
extern "C" EMSCRIPTEN_KEEPALIVE const char* GlyphmotionOptionTable() {
  static const std::string table = [] {
    std::string lines, effects;
    for (const std::string& effect : glyphmotion::EffectNames())
      effects += (effects.empty() ? "" : ",") + glyphmotion::OptionForm(effect);
    for (const std::string& name : glyphmotion::LibraryOptionNames()) {
      const glyphmotion::OptionRow* row = glyphmotion::FindOption(name);
      if (!row || name == "text") continue;
      lines += name + '\t' + row->help + '\t' + std::to_string(row->minimum) + '\t' + std::to_string(row->maximum) +
               '\t' + (name == "effect" ? effects : row->words) + '\t' +
               (!row->form     ? "flag"
                : row->repeats ? "repeats"
                               : "value") +
               '\n';
    }
    return lines;
  }();
  return table.c_str();
}
