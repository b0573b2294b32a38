// SPDX-License-Identifier: MIT
#include "host/options/names.h"

#include <algorithm>

#include "platform/ascii.h"

namespace glyphmotion {

std::string Join(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string OptionForm(const std::string& name) {
  std::string form = Lowered(name);
  std::replace(form.begin(), form.end(), ' ', '-');
  return form;
}

}  // namespace glyphmotion
