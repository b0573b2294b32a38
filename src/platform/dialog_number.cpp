// SPDX-License-Identifier: MIT
#include "platform/dialog_number.h"

#include <cstdlib>
#include <limits>

namespace glyphmotion {

NumberRange ParseRange(const std::string& caption) noexcept {
  NumberRange range;
  int numbers[3];
  const char* at = caption.c_str();
  for (int& number : numbers) {
    if (&number != numbers && *at++ != ',') return range;
    char* end = nullptr;
    number = static_cast<int>(std::strtol(at, &end, 10));
    if (end == at) return range;
    at = end;
  }
  if (numbers[0] <= numbers[1]) range = {numbers[0], numbers[1], numbers[2]};
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
