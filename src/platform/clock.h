// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

/// Seconds since 1970, or the value of SOURCE_DATE_EPOCH when that is set to a number, for reproducible files.
std::int64_t CurrentTime() noexcept;

/// CurrentTime as the 24 characters of the C library's ctime, without the line end: "Sat Nov 21 08:07:48 2026". Local
/// time, or UTC when SOURCE_DATE_EPOCH is in effect.
std::string CurrentTimeText();

}  // namespace glyphmotion
