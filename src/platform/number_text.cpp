// SPDX-License-Identifier: MIT
#include "platform/number_text.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace glyphmotion {

#ifdef __cpp_lib_to_chars

std::size_t ReadNumber(std::string_view text, double& value) noexcept {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() ? static_cast<std::size_t>(end - text.data()) : 0;
}

std::string FixedText(double value, int digits) {
  char text[400];
  const auto written = std::to_chars(text, std::end(text), value, std::chars_format::fixed, digits);
  return std::string(text, written.ptr);
}

std::string ShortText(double value) {
  char text[32];
  const auto written = std::to_chars(text, std::end(text), value, std::chars_format::general, 6);
  return std::string(text, written.ptr);
}

std::string ShortestText(float value) {
  char text[32];
  return std::string(text, std::to_chars(text, std::end(text), value).ptr);
}

#else  // a C++ library without the floating-point part, as that of WebAssembly, where C knows one locale

std::size_t ReadNumber(std::string_view text, double& value) noexcept try {
  // Not what strtod alone takes: blanks, a plus, hexadecimal digits.
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  const std::string_view digits = text.substr(sign);
  if (digits.empty() || digits[0] <= ' ' || digits[0] == '+' || digits[0] == '-') return 0;
  const bool hexadecimal = digits.size() > 1 && digits[0] == '0' && (digits[1] | 32) == 'x';
  const std::string copy(hexadecimal ? text.substr(0, sign + 1) : text);
  char* end = nullptr;
  errno = 0;
  const double read = std::strtod(copy.c_str(), &end);
  if (end == copy.c_str() || errno == ERANGE) return 0;
  value = read;
  return static_cast<std::size_t>(end - copy.c_str());
} catch (...) {
  return 0;
}

std::string FixedText(double value, int digits) {
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

std::string ShortText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string ShortestText(float value) {
  constexpr int kMostDigits = 9;
  char text[32], plain[400];
  int digits = 0;
  do std::snprintf(text, sizeof text, "%.*e", digits, static_cast<double>(value));
  while (std::strtof(text, nullptr) != value && ++digits < kMostDigits);
  const char* exponent = std::strchr(text, 'e');
  if (!exponent) return text;
  std::snprintf(plain, sizeof plain, "%.*f", std::max(digits - std::atoi(exponent + 1), 0), static_cast<double>(value));
  return std::strlen(plain) <= std::strlen(text) ? plain : text;
}

#endif

}  // namespace glyphmotion
