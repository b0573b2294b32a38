// SPDX-License-Identifier: MIT
// The program as a module that is called with words as often as its caller likes; and the option table, for what is
// generated from it. Texts cross as JSON.
#include <emscripten/emscripten.h>

#include <cstdio>
#include <exception>
#include <nlohmann/json.hpp>

#include "host/program/option_table.h"
#include "host/program/program.h"

using nlohmann::json;

/// Runs the program with an array of words. Its exit code.
extern "C" EMSCRIPTEN_KEEPALIVE int GlyphmotionRun(const char* words) {
  std::set_terminate(glyphmotion::EndWithoutMemory);
  const int code = glyphmotion::RunProgram(json::parse(words).get<std::vector<std::string>>());
  std::fflush(stdout);
  return code;
}

/// An array with the rows of the option table. It stays.
extern "C" EMSCRIPTEN_KEEPALIVE const char* GlyphmotionOptions() {
  static const std::string options = [] {
    json rows = json::array();
    for (const glyphmotion::OptionRow& row : glyphmotion::OptionRows()) {
      rows.push_back({{"name", glyphmotion::LongName(row).substr(2)},
                      {"pair", !glyphmotion::NegativeName(row).empty()},
                      {"form", row.form ? row.form : ""},
                      {"group", row.group},
                      {"help", row.help},
                      {"minimum", row.minimum},
                      {"maximum", row.maximum},
                      {"words", row.words},
                      {"repeats", row.repeats}});
    }
    return rows.dump();
  }();
  return options.c_str();
}
