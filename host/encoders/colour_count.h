// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace glyphmotion {

/// Counts the distinct colours of all pictures of a run, by red, green and blue. Fully transparent pixels have none.
/// Holds 2 MiB from the first picture on.
class ColourCount {
 public:
  /// A packed DIB; anything else is ignored.
  void Add(std::span<const std::uint8_t> dib, int transparentIndex);
  int Count() const { return count_; }

 private:
  void Mark(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

  std::vector<std::uint64_t> seen_;  // one bit a colour
  std::vector<std::uint8_t> pixels_;
  int count_ = 0;
};

}  // namespace glyphmotion
