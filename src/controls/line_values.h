// SPDX-License-Identifier: MIT
// The values in a document's lines.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Length of a family's stem, the start of each line.
constexpr std::size_t kStemLength = 6;

/// The number at the start of a text, after blanks and a sign; 0 when there is none, saturated to 32 bits.
inline std::int32_t LeadingNumber(std::string_view text) noexcept {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = std::min(value * 10 + (text[i] - '0'), kMost + 1);
  }
  return static_cast<std::int32_t>(negative ? -value : std::min(value, kMost));
}

/// What would end a line becomes a blank.
inline void BlankLineEnds(std::string& text) {
  for (const char end : {'\r', '\n', '\0'}) {
    for (std::size_t at = 0; (at = text.find(end, at)) != std::string::npos;) text[at] = ' ';
  }
}

}  // namespace glyphmotion
