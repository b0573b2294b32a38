// SPDX-License-Identifier: MIT
// The fountains that ship with the program, with the names that their library file cannot hold.
#pragma once

#include <span>

namespace glyphmotion {

struct ShippedFountain {
  const char* name;
  const char* colours;  ///< "#start,#colour@position,...,#end", as in a fountain:... text
};

/// In the order of FountainLibrary.fll.
std::span<const ShippedFountain> ShippedFountains() noexcept;

}  // namespace glyphmotion
