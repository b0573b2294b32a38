// SPDX-License-Identifier: MIT
#include "materials/text_parts.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "materials/colour_text.h"
#include "materials/shipped.h"
#include "platform/ascii.h"
#include "platform/number_text.h"

namespace glyphmotion {
namespace {

std::optional<double> NumberOf(std::string_view text) {
  double value = 0;
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  const std::size_t read = ReadNumber(text, value);
  if (!read || read != text.size() || !(value > -1e12 && value < 1e12)) return std::nullopt;
  return value;
}

}  // namespace

std::string Quote(std::string_view text) { return "'" + std::string(text) + "'"; }

bool Fail(std::string& error, std::string sentence) {
  error = std::move(sentence);
  return false;
}

std::string Plain(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c != ' ' && c != '-' && c != '_') plain += ToLower(c);
  }
  return plain;
}

std::vector<std::string> Split(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    std::string_view part = text.substr(at, end - at);
    while (!part.empty() && part.front() == ' ') part.remove_prefix(1);
    while (!part.empty() && part.back() == ' ') part.remove_suffix(1);
    parts.emplace_back(part);
    at = end + 1;
  }
  return parts;
}

bool NumberWithin(const std::string& key, const std::string& text, double least, double most, bool whole, double& value,
                  std::string& error) {
  const auto number = NumberOf(text);
  if (number && *number >= least && *number <= most &&
      (!whole || *number == static_cast<double>(static_cast<std::int64_t>(*number)))) {
    value = *number;
    return true;
  }
  const auto shown = [](double v) {
    std::string digits = std::to_string(v);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
  };
  return Fail(error, Quote(text) + " is not a value for " + key + "; write " + (whole ? "a whole number" : "a number") +
                         " from " + shown(least) + " to " + shown(most));
}

bool ColourPart(const std::string& text, Colour& colour, std::string& error) {
  int alpha = 0;
  if (!ParseColourAndAlpha(text, colour, alpha))
    return Fail(error, Quote(text) + " is not a colour; write #RRGGBB or a name such as red" + ColourSuggestion(text));
  return alpha == 255 || Fail(error, Quote(text) + " has an alpha value, which is not possible here; write #RRGGBB");
}

bool LooksLikeColour(const std::string& part) {
  Colour colour = 0;
  int alpha = 0;
  return part.starts_with('#') || ParseColourAndAlpha(part.substr(0, part.find_first_of("-@")), colour, alpha);
}

std::vector<std::string> LibraryPathsOf(const char* library) {
  std::vector<std::string> paths = {ShippedLibraryPath(library), OwnLibraryPath(library)};
  std::erase(paths, "");
  return paths;
}

}  // namespace glyphmotion
