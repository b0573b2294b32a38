// SPDX-License-Identifier: MIT
// Fields of an event, whatever a page has put there.
#pragma once

#include <string>

#include "host/page/page_message.h"

namespace glyphmotion {

inline int NumberIn(const Json& event, const char* key, int fallback = -1) {
  const auto found = event.find(key);
  if (found == event.end() || !found->is_number()) return fallback;
  const double value = found->get<double>();
  return value > -1e9 && value < 1e9 ? static_cast<int>(value) : fallback;
}

inline std::string TextIn(const Json& event, const char* key) {
  const auto found = event.find(key);
  return found != event.end() && found->is_string() ? found->get<std::string>() : std::string();
}

inline bool FlagIn(const Json& event, const char* key) {
  const auto found = event.find(key);
  return found != event.end() && found->is_boolean() && found->get<bool>();
}

}  // namespace glyphmotion
