// SPDX-License-Identifier: MIT
// A look as a file: apart from the reader, for builds that write none.
#include <locale>
#include <map>
#include <sstream>

#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

#include "host/options/looks.h"
#include "host/options/option_table.h"
#include "host/options/values.h"

namespace glyphmotion {

std::string LookText(const std::vector<Look::Entry>& entries) {
  std::ostringstream text;
  text.imbue(std::locale::classic());  // the application's may group digits
  std::map<std::string, std::string> settings;
  text << "# A look of your own\n";
  for (const auto& [option, values, origin] : entries) {
    const std::string& value = values.back();
    if (option == "--set") {
      settings[value.substr(0, value.find('='))] = value.substr(value.find('=') + 1);
    } else if (!FindOption(option)->form && (value == "0" || value == "1")) {
      text << option.substr(2) << " = " << (value == "1" ? "true" : "false") << "\n";
    } else if (const auto number = WholeNumber(value)) {
      text << option.substr(2) << " = " << *number << "\n";
    } else {
      text << option.substr(2) << " = " << toml::value<std::string>(value) << "\n";
    }
  }
  if (!settings.empty()) text << "[set]\n";
  for (const auto& [key, value] : settings)
    text << toml::value<std::string>(key) << " = " << toml::value<std::string>(value) << "\n";
  return text.str();
}

}  // namespace glyphmotion
