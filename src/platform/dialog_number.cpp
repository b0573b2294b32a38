// SPDX-License-Identifier: MIT
#include "platform/dialog_number.h"

#include <cstdio>
#include <limits>

namespace glyphmotion {

NumberRange ParseRange(const std::string& caption) noexcept {
  NumberRange range;
  int minimum = 0, maximum = 0, initial = 0;
  if (std::sscanf(caption.c_str(), "%d,%d,%d", &minimum, &maximum, &initial) == 3 && minimum <= maximum) {
    range = {minimum, maximum, initial};
  }
  return range;
}

std::int64_t NumberOfText(const std::string& text, bool isSigned) noexcept {
  const char* at = text.c_str();
  while (*at == ' ' || (*at >= '\t' && *at <= '\r')) ++at;
  const bool negative = isSigned && *at == '-';
  if (negative || *at == '+') ++at;
  const std::int64_t most = negative   ? std::int64_t{1} + std::numeric_limits<std::int32_t>::max()
                            : isSigned ? std::numeric_limits<std::int32_t>::max()
                                       : std::numeric_limits<std::uint32_t>::max();
  std::int64_t value = 0;
  for (; *at >= '0' && *at <= '9'; ++at) {
    value = value * 10 + (*at - '0');
    if (value > most) return 0;
  }
  return negative ? -value : value;
}

}  // namespace glyphmotion
