// SPDX-License-Identifier: MIT
#include "platform/broken_down_time.h"

namespace glyphmotion {

bool BrokenDownTime(std::time_t seconds, bool utc, std::tm& parts) noexcept {
  const __time64_t time = seconds;
  return (utc ? _gmtime64_s(&parts, &time) : _localtime64_s(&parts, &time)) == 0;
}

}  // namespace glyphmotion
