// SPDX-License-Identifier: MIT
// Caches fills that do not change between the frames of a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "materials/material.h"

namespace glyphmotion {

/// MaterialToBitmap with a cache: the same pixels, the same bytes written into the record, and the same state of the
/// random generator as rendering anew. Keeps at most kMaxBytes of bitmaps and evicts the least recently used.
class MaterialCache {
 public:
  static constexpr std::size_t kMaxBytes = std::size_t{64} << 20;

  MaterialCache() = default;
  /// A cache for another thread of the run. What `elder` has is copied from there; nobody may change it meanwhile.
  explicit MaterialCache(const MaterialCache* elder) : elder_(elder) {}

  /// A bitmap that the caller owns, or nothing on failure.
  PackedDib Render(Material& material, int width, int height) noexcept;

 private:
  struct Entry {
    std::string key;  ///< the bytes of the record that the pixels depend on, and the size
    PackedDib bitmap;
    bool setsRandom = false;
    std::uint32_t randomState = 0;
  };
  const Entry* Inherited(const std::string& key) const;

  const MaterialCache* elder_ = nullptr;
  std::list<Entry> entries_;
  std::size_t bytes_ = 0;
};

}  // namespace glyphmotion
