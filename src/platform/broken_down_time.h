// SPDX-License-Identifier: MIT
// The part of clock.cpp that differs between C libraries.
#pragma once

#include <ctime>

namespace glyphmotion {

/// The broken-down time of a number of seconds since 1970, in UTC or local time. False when it is out of range.
bool BrokenDownTime(std::time_t seconds, bool utc, std::tm& parts) noexcept;

}  // namespace glyphmotion
