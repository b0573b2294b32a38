// SPDX-License-Identifier: MIT
#include "platform/broken_down_time.h"

namespace glyphmotion {

bool BrokenDownTime(std::time_t seconds, bool utc, std::tm& parts) noexcept {
  return (utc ? gmtime_r(&seconds, &parts) : localtime_r(&seconds, &parts)) != nullptr;
}

}  // namespace glyphmotion
