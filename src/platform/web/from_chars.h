// SPDX-License-Identifier: MIT
// What this C++ library lacks, for the reader of TOML, which would use a stream otherwise, and with it all locales.
#pragma once

#include <charconv>

#include "platform/number_text.h"

namespace std {

inline from_chars_result from_chars(const char* begin, const char* end, double& value) noexcept {
  const size_t length = glyphmotion::ReadNumber({begin, static_cast<size_t>(end - begin)}, value);
  return {begin + length, length ? errc() : errc::invalid_argument};
}

// For what it prints, which nothing calls.
template <class Number, class... Format>
to_chars_result to_chars(char*, char*, Number, chars_format, Format...);
to_chars_result to_chars(char*, char*, float);
to_chars_result to_chars(char*, char*, double);

}  // namespace std
