// SPDX-License-Identifier: MIT
// Values of options: numbers, times, words. What is not allowed is refused with a UsageError.
#pragma once

#include <optional>
#include <string>

#include "host/options/option_table.h"

namespace glyphmotion {

std::optional<long> WholeNumber(const std::string& text);
long NumberInRange(const std::string& option, const std::string& value, long minimum, long maximum);

/// A time in the output's unit.
struct TimeValue {
  long units = 0;
  bool exact = true;  ///< false: rounded to a whole unit
};
/// "80ms", "8cs", "0.1s", or a bare number of units. `unit` is one unit in milliseconds, 10 or 1; the result lies
/// within the range, which is given in units.
TimeValue TimeInRange(const std::string& option, const std::string& value, int unit, long minimum, long maximum);

/// Refuses what the option's row does not allow: a number out of its range, a word that is none of its own.
void CheckValue(const OptionRow& row, const std::string& value);

}  // namespace glyphmotion
