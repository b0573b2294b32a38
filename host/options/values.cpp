// SPDX-License-Identifier: MIT
#include "host/options/values.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "host/options/typed_words.h"
#include "platform/number_text.h"

namespace glyphmotion {
namespace {

// "a, b or c"
std::string OneOf(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i)
    text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
  return text;
}

}  // namespace

std::optional<long> WholeNumber(const std::string& text) {
  long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

long NumberInRange(const std::string& option, const std::string& value, long minimum, long maximum) {
  const auto number = WholeNumber(value);
  if (!number || *number < minimum || *number > maximum)
    Refuse(option + " " + value + " is not allowed: it takes a whole number from " + std::to_string(minimum) + " to " +
           std::to_string(maximum));
  return *number;
}

TimeValue TimeInRange(const std::string& option, const std::string& value, int unit, long minimum, long maximum) {
  static constexpr struct {
    std::string_view name;
    double milliseconds;
  } units[] = {{"ms", 1}, {"cs", 10}, {"s", 1000}};
  double number = 0;
  const std::size_t read = ReadNumber(value, number);
  const std::string_view rest = std::string_view(value).substr(read);
  double scale = rest.empty() && number == std::floor(number) ? unit : 0;
  for (const auto& row : units) {
    if (row.name == rest) scale = row.milliseconds;
  }
  const double exact = number * scale / unit, rounded = std::round(exact);
  if (!read || scale == 0 || !(rounded >= static_cast<double>(minimum)) || rounded > static_cast<double>(maximum)) {
    Refuse(option + " " + value + " is not allowed: it takes a whole number from " + std::to_string(minimum) + " to " +
           std::to_string(maximum) + (unit == 10 ? " (1/100 s)" : " (ms)") + ", or a time such as 80ms, 8cs or 0.1s, " +
           std::to_string(minimum * unit) + " to " + std::to_string(maximum * unit) + " ms");
  }
  return {static_cast<long>(rounded), std::abs(exact - rounded) < 1e-6};
}

void CheckValue(const OptionRow& row, const std::string& value) {
  const std::string option = LongName(row);
  const std::vector<std::string> words = WordsOf(row);
  const bool isNumber = row.minimum < row.maximum;
  if (words.empty()) {
    if (isNumber) NumberInRange(option, value, row.minimum, row.maximum);
    return;
  }
  for (const std::string& word : words) {
    if (word == value) return;
  }
  const auto number = WholeNumber(value);
  if (isNumber && number && *number >= row.minimum && *number <= row.maximum) return;
  const std::string numbers =
      isNumber ? ", or a number from " + std::to_string(row.minimum) + " to " + std::to_string(row.maximum) : "";
  Refuse(option + " " + value + " is not allowed; it takes " + OneOf(words) + numbers);
}

}  // namespace glyphmotion
