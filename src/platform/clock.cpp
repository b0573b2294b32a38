// SPDX-License-Identifier: MIT
#include "platform/clock.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>

#include "platform/broken_down_time.h"

namespace glyphmotion {
namespace {

std::optional<std::int64_t> SourceDate() noexcept {
  const char* text = std::getenv("SOURCE_DATE_EPOCH");
  if (!text || !*text) return std::nullopt;
  std::int64_t seconds = 0;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, seconds);
  if (error != std::errc() || stop != end) return std::nullopt;
  return seconds;
}

}  // namespace

std::int64_t CurrentTime() noexcept {
  const auto source = SourceDate();
  return source ? *source : static_cast<std::int64_t>(std::time(nullptr));
}

std::string CurrentTimeText() {
  const auto source = SourceDate();
  const auto seconds = static_cast<std::time_t>(source ? *source : CurrentTime());
  std::tm parts{};
  if (!BrokenDownTime(seconds, source.has_value(), parts)) return {};
  char text[64] = "";  // the C locale's names, whatever locale the host has set
  static constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::snprintf(text, sizeof text, "%s %s %2d %02d:%02d:%02d %lld", kDays[parts.tm_wday], kMonths[parts.tm_mon],
                parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec, 1900LL + parts.tm_year);
  return text;
}

}  // namespace glyphmotion
