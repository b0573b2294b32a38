// SPDX-License-Identifier: MIT
// What clock.cpp asks of each machine's C library.
#pragma once

#include <ctime>

namespace glyphmotion {

/// The calendar's parts of a time, in UTC or local time. False when the time has none.
bool BreakTime(std::time_t seconds, bool utc, std::tm& parts) noexcept;

}  // namespace glyphmotion
