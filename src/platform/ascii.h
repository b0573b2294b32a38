// SPDX-License-Identifier: MIT
// Letters and digits of keys, names and file formats. Nothing here asks the locale: only A to Z have two cases.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace glyphmotion {

constexpr char ToLower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

inline std::string Lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToLower);
  return text;
}

constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return ToLower(x) == ToLower(y); });
}

/// The value of a hexadecimal digit of either case; -1 for other characters.
constexpr int HexDigit(char c) noexcept {
  if (IsDigit(c)) return c - '0';
  const char small = ToLower(c);
  return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

constexpr std::string_view kHexDigits = "0123456789ABCDEF", kSmallHexDigits = "0123456789abcdef";

/// Appends the two digits of a byte.
inline void AppendHex(std::string& text, std::uint8_t byte, std::string_view digits = kHexDigits) {
  text += digits[byte >> 4];
  text += digits[byte & 15];
}

}  // namespace glyphmotion
