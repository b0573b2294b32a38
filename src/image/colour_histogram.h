// SPDX-License-Identifier: MIT
// How many pixels of a run have each colour, exactly. The lowest eight bits of all counts are in one table, cube after
// cube as in the matcher's (colour_cells.h), so that the part that a picture uses fits into a cache and the rest costs
// no memory. The other bits are in pages of a cube each, for the few colours of many pixels.
#pragma once

#include <array>
#include <cstdint>

#include "image/colour_cells.h"
#include "image/frame_list.h"
#include "platform/memory.h"

namespace glyphmotion {

/// 250 KiB: too large for the stack.
class ColourHistogram {
 public:
  /// Counts the pixels of 24-bit frames, once. False when out of memory, when an image is malformed, or when the run
  /// was asked to end.
  bool Count(const FrameList& frames) noexcept;

  /// Number of different colours.
  int Colours() const noexcept { return colours_; }
  void Drop(Rgb colour) noexcept;

  /// Whether a colour of the cube occurs.
  bool Uses(std::uint32_t cube) const noexcept { return used_[cube]; }
  /// Pixels of a colour. place  in the order of kPlaces.
  std::uint64_t PixelsAt(std::uint32_t place) const noexcept {
    const std::uint32_t* page = pages_[place / kCubeColours];
    return low_[place] + (page ? std::uint64_t{page[place % kCubeColours]} << 8 : 0);
  }

 private:
  static constexpr std::size_t kPagesInBlock = 64;

  bool CountRow(const std::uint8_t* row, std::size_t width) noexcept;
  bool Carry(std::uint32_t place, std::uint32_t count) noexcept;

  MovableBlock lowBlock_;  // like the others locked as long as it lives
  std::uint8_t* low_ = nullptr;
  std::array<bool, kCubeCount> used_{};
  std::array<std::uint32_t*, kCubeCount> pages_{};
  std::array<MovableBlock, kCubeCount / kPagesInBlock> blocks_;
  std::uint32_t* lastBlock_ = nullptr;
  std::size_t pageCount_ = 0;
  int colours_ = 0;
};

}  // namespace glyphmotion
