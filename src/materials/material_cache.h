// SPDX-License-Identifier: MIT
// Fills that do not change between the frames of a run are made once a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "materials/material.h"

namespace glyphmotion {

/// MaterialToBitmap with a memory: the same pixels, the same bytes written into the record, and the random generator
/// left in the same state as rendering anew would leave it. Holds at most kMaxBytes of bitmaps, the least recently used
/// going first.
class MaterialCache {
 public:
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

  /// A bitmap that the caller owns, or nothing.
  PackedDib Render(Material& material, int width, int height) noexcept;

 private:
  struct Entry {
    std::string key;  ///< every byte of the record that the pixels depend on, and the size
    PackedDib bitmap;
    bool setsRandom = false;
    std::uint32_t randomState = 0;
  };
  std::list<Entry> entries_;
  std::size_t bytes_ = 0;
};

}  // namespace glyphmotion
